#pragma once

// Whether this process may write machine-wide settings: a value is written under
// HKEY_LOCAL_MACHINE\Software\Halvard\Rights Check, read back and removed again (with
// "Software\Halvard" itself when the test made it). Asking the
// token for membership of Administrators would miss policies and virtualisation; writing is
// the question the installer really has.
bool RegistryWriteTest();
