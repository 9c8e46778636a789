#pragma once

#include "foundation/HVString.h"
#include "foundation/win/HVRegKey.h"

#include <windows.h>

#include <cstdint>
#include <vector>

class CInstallChangeLog;

// Every registry change of the install goes through one of these, bound to one key: it makes
// the change and notes it in the change log with what was there before, so that an uninstall
// can undo exactly what the install did. Keys are noted as "HKLM\..." or "HKCU\..."; a key the
// writer had to make is noted once, at the topmost level that did not exist. Previous data is
// kept in the ".reg" form of CProductRecordRules::DescribeData.
class CRegistryWriter
{
public:
    CRegistryWriter(CInstallChangeLog& changes, HKEY root, const HVString& path, HVRegView view = HVRegView::Native);

    // Opens the key for reading and writing, making it when it is missing. False (and logged)
    // when it can't be had; every write then fails.
    bool Open();
    // Opens an existing key only; false without a log line when there is none.
    bool OpenExisting();
    bool IsOpen() const { return key_.IsOpen(); }
    const HVRegKey& Key() const { return key_; }
    const HVString& NotedPath() const { return notedPath_; }

    bool SetString(const HVString& name, const HVString& value);
    bool SetDWORD(const HVString& name, DWORD value);
    // Any type, copied as it is.
    bool SetValue(const HVString& name, DWORD type, const std::vector<uint8_t>& data);
    // A missing value is nothing to do (true).
    bool DeleteValue(const HVString& name);
    // The subkey with everything below it; a missing one is nothing to do (true).
    bool DeleteSubKeyTree(const HVString& name);

    static const char16_t* RootName(HKEY root);

private:
    bool Write(const HVString& name, DWORD type, const void* data, size_t size);
    // The values of a key about to go and of the keys below it, each as a deletion.
    void NoteValuesOf(HKEY parent, const HVString& subKey, const HVString& notedPath);

    CInstallChangeLog& changes_;
    HKEY root_;
    HVString path_;
    HVString notedPath_;
    HVRegView view_;
    HVRegKey key_;
};
