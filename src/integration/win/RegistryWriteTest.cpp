#include "integration/win/RegistryWriteTest.h"

#include "foundation/HVString.h"
#include "foundation/win/HVRegKey.h"

bool RegistryWriteTest()
{
    HVRegKey halvard;
    bool createdHalvard = false;
    if (!halvard.Create(HKEY_LOCAL_MACHINE, u"Software\\Halvard", KEY_READ | KEY_WRITE, HVRegView::Native,
                        &createdHalvard))
        return false;
    bool passed = false;
    {
        HVRegKey check;
        if (!check.Create(halvard.Get(), u"Rights Check", KEY_READ | KEY_WRITE))
            return false;
        FILETIME now;
        ::GetSystemTimeAsFileTime(&now);
        const int64_t stamp = (static_cast<int64_t>(now.dwHighDateTime) << 32) | now.dwLowDateTime;
        const HVString name = HVString::Format(u"Rights Check (%I64d)", stamp);
        const HVString expected = u"Rights OK";
        if (check.SetString(name, expected))
        {
            HVString read;
            passed = check.QueryString(name, read) && read == expected;
            check.DeleteValue(name);
        }
    }
    halvard.DeleteSubKey(u"Rights Check");
    // A machine that never had the product keeps no trace of the question either.
    if (createdHalvard)
    {
        halvard.Close();
        HVRegKey software;
        if (software.Open(HKEY_LOCAL_MACHINE, u"Software", KEY_READ | KEY_WRITE))
            software.DeleteSubKey(u"Halvard");
    }
    return passed;
}
