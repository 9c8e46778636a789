#pragma once

#include <string>

namespace e2e
{
// Folders end in a backslash. The build puts every test program and tool into <build>/bin and
// assembles the sample setup folder in <build>/media, so both are found from the running
// program's own folder and tests need no configuration.

// The folder of the running test program.
std::wstring TestProgramFolder();
// The sample setup folder: TestProgramFolder() + "..\media\", as a full path.
std::wstring MediaFolder();
// InstallWizard.exe in the sample setup folder.
std::wstring InstallWizardPath();
// A test tool (ShowBox.exe, HoldLock.exe, ListWindows.exe) beside the test program.
std::wstring ToolPath(const std::wstring& fileName);
// An empty folder of the test's own under the build tree ("..\scratch\<name>\"): whatever was
// there from an earlier run is removed first. Empty when it cannot be made.
std::wstring ScratchFolder(const std::wstring& name);
// UTF-16 to UTF-8, for test failure messages, and back.
std::string Utf8(const std::wstring& text);
std::wstring Wide(const std::string& utf8);
// The user's temporary folder, as GetTempPathW gives it.
std::wstring TempFolder();
// A file or folder is there.
bool PathExists(const std::wstring& path);
}
