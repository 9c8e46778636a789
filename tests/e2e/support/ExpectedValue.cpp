#include "ExpectedValue.h"

#include "FolderTree.h"
#include "TestPaths.h"
#include "TestRegistry.h"

#include <sstream>

namespace e2e
{
std::optional<std::wstring> ExpectedValue::Actual() const
{
    if (isString)
        return RegString(root, key, name);
    const std::optional<DWORD> number = RegDword(root, key, name);
    return number ? std::optional<std::wstring>(std::to_wstring(*number)) : std::nullopt;
}

std::vector<ExpectedValue> ReadExpectedValues(const std::wstring& fixture, const std::wstring& destination)
{
    std::vector<ExpectedValue> values;
    std::istringstream lines(ReadFileText(fixture));
    for (std::string text; std::getline(lines, text);) {
        if (!text.empty() && text.back() == '\r')
            text.pop_back();
        if (text.empty() || text[0] == '#')
            continue;
        std::wstring line = Wide(text);
        for (size_t at; (at = line.find(L"{DEST}")) != std::wstring::npos;)
            line.replace(at, 6, destination);
        std::vector<std::wstring> f;
        std::wstringstream fields(line);
        for (std::wstring field; std::getline(fields, field, L'|');)
            f.push_back(field);
        f.resize(5);
        const HKEY root = f[0] == L"HKEY_LOCAL_MACHINE" ? HKEY_LOCAL_MACHINE
                          : f[0] == L"HKEY_CURRENT_USER" ? HKEY_CURRENT_USER : HKEY_CLASSES_ROOT;
        values.push_back({root, f[1], f[2] == L"Default" ? L"" : f[2], f[3], f[4] == L"STRING", text});
    }
    return values;
}
}
