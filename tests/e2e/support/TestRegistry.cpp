#include "TestRegistry.h"

namespace e2e
{
namespace
{
HVString H(const std::wstring& s)
{
    return HVString(s.c_str(), static_cast<int32_t>(s.size()));
}

std::wstring W(const HVString& s)
{
    return std::wstring(s.w(), static_cast<size_t>(s.GetLength()));
}

std::vector<std::wstring> W(const std::vector<HVString>& list)
{
    std::vector<std::wstring> out;
    out.reserve(list.size());
    for (const HVString& s : list)
        out.push_back(W(s));
    return out;
}
}

std::optional<std::wstring> RegString(HKEY root, const std::wstring& path, const std::wstring& name, HVRegView view)
{
    HVRegKey key;
    HVString value;
    if (!key.Open(root, H(path), KEY_READ, view) || !key.QueryString(H(name), value))
        return std::nullopt;
    return W(value);
}

std::optional<DWORD> RegDword(HKEY root, const std::wstring& path, const std::wstring& name, HVRegView view)
{
    HVRegKey key;
    DWORD value = 0;
    if (!key.Open(root, H(path), KEY_READ, view) || !key.QueryDWORD(H(name), value))
        return std::nullopt;
    return value;
}

std::optional<std::vector<std::wstring>> RegMultiString(HKEY root, const std::wstring& path,
                                                        const std::wstring& name, HVRegView view)
{
    HVRegKey key;
    std::vector<HVString> values;
    if (!key.Open(root, H(path), KEY_READ, view) || !key.QueryMultiString(H(name), values))
        return std::nullopt;
    return W(values);
}

bool RegKeyExists(HKEY root, const std::wstring& path, HVRegView view)
{
    return HVRegKey::KeyExists(root, H(path), view);
}

bool RegValueExists(HKEY root, const std::wstring& path, const std::wstring& name, HVRegView view)
{
    HVRegKey key;
    return key.Open(root, H(path), KEY_READ, view) && key.HasValue(H(name));
}

std::vector<std::wstring> RegValueNames(HKEY root, const std::wstring& path, HVRegView view)
{
    HVRegKey key;
    if (!key.Open(root, H(path), KEY_READ, view))
        return {};
    return W(key.EnumValueNames());
}

std::vector<std::wstring> RegSubKeys(HKEY root, const std::wstring& path, HVRegView view)
{
    HVRegKey key;
    if (!key.Open(root, H(path), KEY_READ, view))
        return {};
    return W(key.EnumSubKeys());
}

bool RegSetString(HKEY root, const std::wstring& path, const std::wstring& name, const std::wstring& value,
                  HVRegView view)
{
    HVRegKey key;
    return key.Create(root, H(path), KEY_READ | KEY_WRITE, view) && key.SetString(H(name), H(value));
}

bool RegSetDword(HKEY root, const std::wstring& path, const std::wstring& name, DWORD value, HVRegView view)
{
    HVRegKey key;
    return key.Create(root, H(path), KEY_READ | KEY_WRITE, view) && key.SetDWORD(H(name), value);
}

bool RegDeleteKeyTree(HKEY root, const std::wstring& path, HVRegView view)
{
    if (!RegKeyExists(root, path, view))
        return true;
    const size_t cut = path.find_last_of(L'\\');
    HVRegKey parent;
    const std::wstring parentPath = cut == std::wstring::npos ? std::wstring() : path.substr(0, cut);
    const std::wstring leaf = cut == std::wstring::npos ? path : path.substr(cut + 1);
    if (!parent.Open(root, H(parentPath), KEY_READ | KEY_WRITE, view))
        return false;
    parent.DeleteSubKeyTree(H(leaf));
    return !RegKeyExists(root, path, view);
}

bool RegDeleteKeyTreeAndEmptyParents(HKEY root, const std::wstring& path, HVRegView view)
{
    if (!RegDeleteKeyTree(root, path, view))
        return false;
    std::wstring parent = path;
    for (size_t cut; (cut = parent.find_last_of(L'\\')) != std::wstring::npos;) {
        parent.resize(cut);
        if (_wcsicmp(parent.c_str(), L"Software") == 0 || !RegKeyExists(root, parent, view) ||
            !RegSubKeys(root, parent, view).empty() || !RegValueNames(root, parent, view).empty())
            break;
        RegDeleteKeyTree(root, parent, view);
    }
    return true;
}

bool RegDeleteValueIfPresent(HKEY root, const std::wstring& path, const std::wstring& name, HVRegView view)
{
    HVRegKey key;
    if (!key.Open(root, H(path), KEY_READ | KEY_WRITE, view) || !key.HasValue(H(name)))
        return true;
    key.DeleteValue(H(name));
    return !key.HasValue(H(name));
}

bool RegCreateVolatileKey(HKEY root, const std::wstring& path)
{
    ::RegDeleteKeyW(root, path.c_str());
    HKEY key = nullptr;
    DWORD disposition = 0;
    if (::RegCreateKeyExW(root, path.c_str(), 0, nullptr, REG_OPTION_VOLATILE, KEY_ALL_ACCESS, nullptr, &key, &disposition) !=
        ERROR_SUCCESS)
        return false;
    ::RegCloseKey(key);
    return disposition == REG_CREATED_NEW_KEY;
}
}
