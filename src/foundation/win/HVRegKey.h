#pragma once

#include "foundation/HVString.h"

#include <windows.h>

#include <cstdint>
#include <vector>

// Which registry view a key is opened in. Native is the program's own (64-bit) view; the
// installer also reads what a 32-bit build of the product wrote (Key32, "WOW6432Node").
enum class HVRegView { Native, Key32, Key64 };

// Owns one open registry key. Every part of the installer reads and writes the registry
// through this class. Reads of missing values, or of values of another type, return false
// and log nothing: absence is an ordinary answer. Failed writes and deletions return false
// and log a warning; the last system error stays available.
class HVRegKey
{
public:
    HVRegKey() = default;
    ~HVRegKey() { Close(); }
    HVRegKey(const HVRegKey&) = delete;
    HVRegKey& operator=(const HVRegKey&) = delete;
    HVRegKey(HVRegKey&& other) noexcept;
    HVRegKey& operator=(HVRegKey&& other) noexcept;

    bool Open(HKEY parent, const HVString& path, REGSAM access = KEY_READ, HVRegView view = HVRegView::Native);
    // Opens the key, making it (and missing parents) when it doesn't exist.
    bool Create(HKEY parent, const HVString& path, REGSAM access = KEY_READ | KEY_WRITE,
                HVRegView view = HVRegView::Native, bool* created = nullptr);
    void Close();
    bool IsOpen() const { return key_ != nullptr; }
    HKEY Get() const { return key_; }
    HVRegView View() const { return view_; }
    LONG LastError() const { return lastError_; }

    bool HasValue(const HVString& name) const;
    bool QueryValueType(const HVString& name, DWORD& type) const;
    // REG_SZ and REG_EXPAND_SZ (not expanded); a missing terminator is tolerated.
    bool QueryString(const HVString& name, HVString& value) const;
    bool QueryDWORD(const HVString& name, DWORD& value) const;
    bool QueryQWORD(const HVString& name, uint64_t& value) const;
    bool QueryMultiString(const HVString& name, std::vector<HVString>& values) const;
    bool QueryBinary(const HVString& name, std::vector<uint8_t>& data) const;
    // Any type, as stored: for copying a value without converting it.
    bool QueryValue(const HVString& name, DWORD& type, std::vector<uint8_t>& data) const { return QueryRaw(name, type, data); }

    bool SetString(const HVString& name, const HVString& value, DWORD type = REG_SZ);
    bool SetDWORD(const HVString& name, DWORD value);
    bool SetQWORD(const HVString& name, uint64_t value);
    bool SetMultiString(const HVString& name, const std::vector<HVString>& values);
    bool SetBinary(const HVString& name, const void* data, size_t size);
    bool SetValue(const HVString& name, DWORD type, const void* data, size_t size)
    {
        return SetRaw("HVRegKey::SetValue", name, type, data, size);
    }

    bool DeleteValue(const HVString& name);
    // Plain deletion: fails when the subkey still has subkeys of its own.
    bool DeleteSubKey(const HVString& name);
    // Deletes the subkey with everything below it.
    bool DeleteSubKeyTree(const HVString& name);

    std::vector<HVString> EnumSubKeys() const;
    std::vector<HVString> EnumValueNames() const;

    static bool KeyExists(HKEY parent, const HVString& path, HVRegView view = HVRegView::Native);
    static REGSAM ViewFlag(HVRegView view);

private:
    bool QueryRaw(const HVString& name, DWORD& type, std::vector<uint8_t>& data) const;
    bool SetRaw(const char* source, const HVString& name, DWORD type, const void* data, size_t size);

    HKEY key_ = nullptr;
    HVRegView view_ = HVRegView::Native;
    mutable LONG lastError_ = ERROR_SUCCESS;
};
