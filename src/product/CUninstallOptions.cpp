#include "product/CUninstallOptions.h"

namespace
{
// The value after "<name>=" when the argument is that switch.
bool Value(const HVString& argument, const char16_t* name, HVString& value)
{
    const HVString prefix = HVString(name) + u"=";
    if (!argument.StartsWithNoCase(prefix.view()))
        return false;
    value = argument.Mid(prefix.GetLength());
    return true;
}
}

CUninstallOptions CUninstallOptions::Parse(const std::vector<HVString>& arguments)
{
    CUninstallOptions options;
    for (size_t i = 0; i < arguments.size(); ++i) {
        const HVString& argument = arguments[i];
        HVString value;
        if (argument.EqualsNoCase(u"/Silent"))
            options.silent = true;
        else if (argument.EqualsNoCase(u"/RemoveSettings"))
            options.removeSettings = true;
        else if (argument.EqualsNoCase(u"/SuppressMessages"))
            options.suppressMessages = true;
        else if (argument.EqualsNoCase(u"/Log"))
            options.log = true;
        else if (Value(argument, u"/Log", value)) {
            options.log = true;
            options.logPath = value.Trim(u" \"");
        } else if (Value(argument, u"/RemoveAfter", value)) {
            uint32_t id = 0;
            for (char16_t ch : value.view())
                id = ch >= u'0' && ch <= u'9' && id < 429496729u ? id * 10 + (ch - u'0') : 0;
            options.removeAfter = id;
            options.removeAfterPaths.assign(arguments.begin() + static_cast<std::ptrdiff_t>(i) + 1, arguments.end());
            break;
        } else
            options.unknown.push_back(argument);
    }
    return options;
}
