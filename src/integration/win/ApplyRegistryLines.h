#pragma once

#include "foundation/HVString.h"
#include "foundation/win/HVRegKey.h"
#include "integration/ShellRegistration.h"

#include <vector>

struct CShellContext;
class CInstallChangeLog;
class CRegistryActionLine;

// Whether this process runs under WOW64, asked once and kept.
bool IsProcessUnderWow64();

// Performs registry action lines in order (see CRegistryActionLine): expands the macros,
// opens or creates each key and sets, creates or deletes its value. A line that can't be
// applied is passed over and the next one still runs; nothing is reported or undone, but
// every change is noted in the change log for an uninstall.
// underWow64: whether AutoPlay lines go to the 64-bit view as well (a 32-bit build on 64-bit
// Windows); asked of the system unless the caller knows.
void ApplyRegistryLines(const ShellRegistration& record, const std::vector<HVString>& lines, const CShellContext& context,
                        bool underWow64 = IsProcessUnderWow64());

// One expanded line under a root: SET, CREATE (only where the value has no content yet) or
// DELETE, noted in the change log.
void ApplyRegistryLine(const CRegistryActionLine& line, HKEY root, HVRegView view, CInstallChangeLog& changes);

