#pragma once

#include "foundation/HVString.h"
#include "foundation/win/HVRegKey.h"
#include "integration/ShellRegistration.h"

#include <vector>

struct CShellContext;
class CInstallChangeLog;
class CRegistryActionLine;

// Performs registry action lines in order (see CRegistryActionLine): expands the macros,
// opens or creates each key and sets, creates or deletes its value. A line that can't be
// applied is passed over and the next one still runs; nothing is reported or undone, but
// every change is noted in the change log for an uninstall.
void ApplyRegistryLines(const ShellRegistration& record, const std::vector<HVString>& lines, const CShellContext& context);

// One expanded line under a root: SET, CREATE (only where the value has no content yet) or
// DELETE, noted in the change log.
void ApplyRegistryLine(const CRegistryActionLine& line, HKEY root, HVRegView view, CInstallChangeLog& changes);

// Whether this process runs under WOW64, asked once and kept.
bool IsProcessUnderWow64();
