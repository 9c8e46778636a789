#include "foundation/win/HVRegKey.h"

#include "foundation/HVLog.h"

#include <utility>

REGSAM HVRegKey::ViewFlag(HVRegView view)
{
    switch (view) {
    case HVRegView::Key32: return KEY_WOW64_32KEY;
    case HVRegView::Key64: return KEY_WOW64_64KEY;
    default: return 0;
    }
}

HVRegKey::HVRegKey(HVRegKey&& other) noexcept
    : key_(std::exchange(other.key_, nullptr)), view_(other.view_), lastError_(other.lastError_)
{
}

HVRegKey& HVRegKey::operator=(HVRegKey&& other) noexcept
{
    if (this != &other) {
        Close();
        key_ = std::exchange(other.key_, nullptr);
        view_ = other.view_;
        lastError_ = other.lastError_;
    }
    return *this;
}

bool HVRegKey::Open(HKEY parent, const HVString& path, REGSAM access, HVRegView view)
{
    Close();
    HKEY key = nullptr;
    lastError_ = ::RegOpenKeyExW(parent, path.w(), 0, access | ViewFlag(view), &key);
    if (lastError_ != ERROR_SUCCESS)
        return false;
    key_ = key;
    view_ = view;
    return true;
}

bool HVRegKey::Create(HKEY parent, const HVString& path, REGSAM access, HVRegView view, bool* created)
{
    Close();
    HKEY key = nullptr;
    DWORD disposition = 0;
    lastError_ = ::RegCreateKeyExW(parent, path.w(), 0, nullptr, REG_OPTION_NON_VOLATILE, access | ViewFlag(view),
                                   nullptr, &key, &disposition);
    if (created)
        *created = lastError_ == ERROR_SUCCESS && disposition == REG_CREATED_NEW_KEY;
    if (lastError_ != ERROR_SUCCESS) {
        HVLog::Write(HVLog::kWarning, "HVRegKey::Create", u"Error %d creating key %s", lastError_, path);
        return false;
    }
    key_ = key;
    view_ = view;
    return true;
}

void HVRegKey::Close()
{
    if (key_)
        ::RegCloseKey(std::exchange(key_, nullptr));
}

bool HVRegKey::QueryRaw(const HVString& name, DWORD& type, std::vector<uint8_t>& data) const
{
    data.clear();
    if (!key_)
        return false;
    // The value may change size between the two calls; retry a few times rather than loop.
    for (int attempt = 0; attempt < 4; ++attempt) {
        DWORD size = static_cast<DWORD>(data.size());
        lastError_ = ::RegQueryValueExW(key_, name.w(), nullptr, &type, data.empty() ? nullptr : data.data(), &size);
        if (lastError_ == ERROR_SUCCESS && (!data.empty() || size == 0)) {
            data.resize(size);
            return true;
        }
        if (lastError_ != ERROR_SUCCESS && lastError_ != ERROR_MORE_DATA)
            return false;
        data.resize(size + 2);
    }
    return false;
}

bool HVRegKey::HasValue(const HVString& name) const
{
    DWORD type;
    return QueryValueType(name, type);
}

bool HVRegKey::QueryValueType(const HVString& name, DWORD& type) const
{
    if (!key_)
        return false;
    lastError_ = ::RegQueryValueExW(key_, name.w(), nullptr, &type, nullptr, nullptr);
    return lastError_ == ERROR_SUCCESS;
}

bool HVRegKey::QueryString(const HVString& name, HVString& value) const
{
    DWORD type = 0;
    std::vector<uint8_t> data;
    if (!QueryRaw(name, type, data) || (type != REG_SZ && type != REG_EXPAND_SZ))
        return false;
    int32_t chars = static_cast<int32_t>(data.size() / sizeof(wchar_t));
    const auto* text = reinterpret_cast<const char16_t*>(data.data());
    while (chars > 0 && text[chars - 1] == 0)
        --chars;
    value = HVString(text, chars);
    return true;
}

bool HVRegKey::QueryDWORD(const HVString& name, DWORD& value) const
{
    DWORD type = 0;
    std::vector<uint8_t> data;
    if (!QueryRaw(name, type, data) || type != REG_DWORD || data.size() != sizeof(DWORD))
        return false;
    memcpy(&value, data.data(), sizeof value);
    return true;
}

bool HVRegKey::QueryQWORD(const HVString& name, uint64_t& value) const
{
    DWORD type = 0;
    std::vector<uint8_t> data;
    if (!QueryRaw(name, type, data) || type != REG_QWORD || data.size() != sizeof(uint64_t))
        return false;
    memcpy(&value, data.data(), sizeof value);
    return true;
}

bool HVRegKey::QueryMultiString(const HVString& name, std::vector<HVString>& values) const
{
    DWORD type = 0;
    std::vector<uint8_t> data;
    if (!QueryRaw(name, type, data) || type != REG_MULTI_SZ)
        return false;
    values.clear();
    // Empty strings inside the list are kept: lists such as the pending file renames use
    // them (an empty target means "delete"). Only the final terminator is dropped.
    const auto* text = reinterpret_cast<const char16_t*>(data.data());
    size_t chars = data.size() / sizeof(char16_t);
    if (chars > 0 && text[chars - 1] == 0)
        --chars;   // the terminator of the last string
    if (chars > 0 && text[chars - 1] == 0)
        --chars;   // the empty string that ends the list
    if (chars == 0)
        return true;
    size_t start = 0;
    for (size_t i = 0; i <= chars; ++i) {
        if (i == chars || text[i] == 0) {
            values.emplace_back(text + start, static_cast<int32_t>(i - start));
            start = i + 1;
        }
    }
    return true;
}

bool HVRegKey::QueryBinary(const HVString& name, std::vector<uint8_t>& data) const
{
    DWORD type = 0;
    return QueryRaw(name, type, data) && type == REG_BINARY;
}

bool HVRegKey::SetRaw(const char* source, const HVString& name, DWORD type, const void* data, size_t size)
{
    if (!key_) {
        lastError_ = ERROR_INVALID_HANDLE;
        return false;
    }
    lastError_ = ::RegSetValueExW(key_, name.w(), 0, type, static_cast<const BYTE*>(data), static_cast<DWORD>(size));
    if (lastError_ != ERROR_SUCCESS) {
        HVLog::Write(HVLog::kWarning, source, u"Error %d writing value %s", lastError_, name);
        return false;
    }
    return true;
}

bool HVRegKey::SetString(const HVString& name, const HVString& value, DWORD type)
{
    return SetRaw("HVRegKey::SetString", name, type, value.c_str(), (value.GetLength() + 1) * sizeof(char16_t));
}

bool HVRegKey::SetDWORD(const HVString& name, DWORD value)
{
    return SetRaw("HVRegKey::SetDWORD", name, REG_DWORD, &value, sizeof value);
}

bool HVRegKey::SetQWORD(const HVString& name, uint64_t value)
{
    return SetRaw("HVRegKey::SetQWORD", name, REG_QWORD, &value, sizeof value);
}

bool HVRegKey::SetMultiString(const HVString& name, const std::vector<HVString>& values)
{
    std::u16string block;
    for (const HVString& v : values) {
        block.append(v.view());
        block.push_back(0);
    }
    block.push_back(0);
    return SetRaw("HVRegKey::SetMultiString", name, REG_MULTI_SZ, block.data(), block.size() * sizeof(char16_t));
}

bool HVRegKey::SetBinary(const HVString& name, const void* data, size_t size)
{
    return SetRaw("HVRegKey::SetBinary", name, REG_BINARY, data, size);
}

bool HVRegKey::DeleteValue(const HVString& name)
{
    if (!key_)
        return false;
    lastError_ = ::RegDeleteValueW(key_, name.w());
    return lastError_ == ERROR_SUCCESS;
}

bool HVRegKey::DeleteSubKey(const HVString& name)
{
    if (!key_)
        return false;
    lastError_ = ::RegDeleteKeyExW(key_, name.w(), ViewFlag(view_), 0);
    return lastError_ == ERROR_SUCCESS;
}

bool HVRegKey::DeleteSubKeyTree(const HVString& name)
{
    if (!key_)
        return false;
    // RegDeleteTreeW takes no view flag; open the subkey in our view and empty it first.
    HVRegKey sub;
    if (sub.Open(key_, name, KEY_READ | KEY_WRITE | DELETE, view_)) {
        lastError_ = ::RegDeleteTreeW(sub.Get(), nullptr);
        sub.Close();
        if (lastError_ != ERROR_SUCCESS)
            return false;
    }
    return DeleteSubKey(name);
}

std::vector<HVString> HVRegKey::EnumSubKeys() const
{
    std::vector<HVString> names;
    if (!key_)
        return names;
    wchar_t name[256];   // key names are at most 255 characters
    for (DWORD i = 0;; ++i) {
        DWORD length = 256;
        const LONG rc = ::RegEnumKeyExW(key_, i, name, &length, nullptr, nullptr, nullptr, nullptr);
        if (rc != ERROR_SUCCESS)
            break;
        names.emplace_back(name, static_cast<int32_t>(length));
    }
    return names;
}

std::vector<HVString> HVRegKey::EnumValueNames() const
{
    std::vector<HVString> names;
    if (!key_)
        return names;
    std::vector<wchar_t> name(16384);   // value names are at most 16,383 characters
    for (DWORD i = 0;; ++i) {
        DWORD length = static_cast<DWORD>(name.size());
        const LONG rc = ::RegEnumValueW(key_, i, name.data(), &length, nullptr, nullptr, nullptr, nullptr);
        if (rc != ERROR_SUCCESS)
            break;
        names.emplace_back(name.data(), static_cast<int32_t>(length));
    }
    return names;
}

bool HVRegKey::KeyExists(HKEY parent, const HVString& path, HVRegView view)
{
    HVRegKey key;
    return key.Open(parent, path, KEY_READ, view);
}
