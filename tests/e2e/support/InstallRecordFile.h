#pragma once

#include "changes/CInstallRecord.h"

#include <string>

namespace e2e
{
// The install record of a program folder, read as the uninstaller reads it.
CInstallRecord::Contents ReadInstallRecord(const std::wstring& installFolder);
// The record's first change of this kind whose path starts with `path` (case ignored); null
// when there is none.
const InstallChange* FindChange(const CInstallRecord::Contents& record, InstallChange::Kind kind, const std::wstring& path);
}
