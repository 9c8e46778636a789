#pragma once

// Where the product keeps its records, spelled out once for the tests: written here apart from
// the product's own constants, so that a misspelt key in the product fails the tests that read it.
#include <string>

namespace e2e
{
// Under HKEY_CURRENT_USER.
inline const std::wstring kProductKey = L"Software\\Halvard\\Sonora 32";
inline const std::wstring kInstallerKey = kProductKey + L"\\Installer";
inline const std::wstring kPropertiesKey = kProductKey + L"\\Properties";
inline const std::wstring kJournalKey = kInstallerKey + L"\\Finalize";
inline const std::wstring kRunOnceKey = L"Software\\Microsoft\\Windows\\CurrentVersion\\RunOnce";
// Under HKEY_LOCAL_MACHINE.
inline const std::wstring kRecordKey = L"Software\\Halvard\\Corvale\\Installations\\Sonora 32";
inline const std::wstring kUninstallEntryKey = L"SOFTWARE\\Microsoft\\Windows\\CurrentVersion\\Uninstall\\Sonora 32";
}  // namespace e2e
