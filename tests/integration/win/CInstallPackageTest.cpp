// CInstallPackage on packages made for each case, unattended (no questions), into a scratch
// program folder.
#include "integration/win/CInstallPackage.h"

#include "changes/CInstallChangeLog.h"

#include "E2ESupport.h"
#include "ZipBuilder.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace
{
std::wstring UnpackFolder() { return e2e::TempFolder() + L"Install Wizard Package\\"; }
// What the sample dependency setup program (as "tool.exe" in a package, or the product's
// launcher "Start.exe") notes of each start: its name and arguments.
std::wstring StartedLog() { return e2e::TempFolder() + L"Sample Dependency Setup.log"; }
const std::wstring kRegistered = L"Software\\Halvard\\Sonora 32\\Registered";
}   // namespace

TEST(CInstallPackageTest, PackageWordsAndTheirOptions)
{
    const std::string skin = "<LWMS/>";
    const std::string tool = e2e::ReadFileText(e2e::TestProgramFolder() + L"SampleDependencySetup.exe");
    const std::string shell = e2e::ReadFileText(e2e::MediaFolder() + L"Listenwell\\Plugins\\System\\SampleShell.dll");
    const struct
    {
        const char* what;
        std::string description;
        std::vector<const wchar_t*> present;   // relative to the program folder ("~": to the unpack folder)
        std::vector<const wchar_t*> absent;
        bool unpackFolderKept;
        std::string started = {};     // the lines of the programs started
        std::string installer = {};   // what the program folder's package installer was asked
    } cases[] = {
        {"lower-case unzipdir keeps folders; DONT_CLEANUP keeps the unpack folder",
         "<LWPF><Actions><Action>unzipdir</Action><Action>dont_cleanup</Action></Actions></LWPF>",
         {L"Docs\\a.txt", L"main.xml"}, {}, true},
        {"NONE unpacks but runs no file command, and cleans up",
         "<LWPF><Actions>NONE</Actions><FileEntry><File>Docs/a.txt</File><Action Command=\"COPY_HELPDIR\"/></FileEntry></LWPF>",
         {}, {L"Help\\a.txt"}, false},
        {"a mini skin without LWFS goes to the standard view under the package's name",
         "<LWPF><Actions>INSTALLMINISKIN</Actions><Package><Name>Plain</Name></Package></LWPF>",
         {L"Skins\\Standard View\\Plain\\main.xml", L"Skins\\Standard View\\Plain\\a.txt"}, {L"Skins\\Standard View\\Plain\\Package.xml"}, false},
        {"flat layout: copy by command word, macros in Param, deletion only inside the program folder",
         "<LWPF><Package><HasActions>1</HasActions><File1>a.txt</File1><File1Action1>COPY_PLUGINDIR</File1Action1>"
         "<File2>main.xml</File2><File2Action1 Param=\"[PROGRAMPATH]Extra\">COPY_DIRECTORY</File2Action1>"
         "<File3>x</File3><File3Action1 Param=\"C:\\windows\\system32\">DELETE_DIRECTORY</File3Action1></Package></LWPF>",
         {L"Plugins\\a.txt", L"Extra\\main.xml"}, {}, false},
        {"EXECUTE waits for the file run with its Param; DELETE_ORIGINAL makes a copy a move",
         "<LWPF><Actions>DONT_CLEANUP</Actions><FileEntry><File>tool.exe</File><Action Command=\"EXECUTE\" Param=\"/quiet\"/>"
         "</FileEntry><FileEntry><File>Docs/a.txt</File><Action Command=\"COPY_HELPDIR\"/><Action Command=\"DELETE_ORIGINAL\"/>"
         "</FileEntry></LWPF>",
         {L"Help\\a.txt", L"~tool.exe"}, {L"~a.txt"}, true, "tool.exe|/quiet\r\n"},
        {"INSTALL hands the file to the package installer, REGISTER calls its DllRegisterServer, START_SN starts the product",
         "<LWPF><FileEntry><File>main.xml</File><Action Command=\"INSTALL\"/></FileEntry>"
         "<FileEntry><File>SampleShell.dll</File><Action Command=\"REGISTER\"/><Action Command=\"START_SN\"/></FileEntry></LWPF>",
         {}, {}, false, "Start.exe|\r\n", "/Q /Install \""},
        {"REG_PLUGIN installs a product plug-in into its kind's folder",
         "<LWPF><FileEntry><File>dsp.dll</File><Action Command=\"REG_PLUGIN\"/></FileEntry></LWPF>",
         {L"Plugins\\DSP\\dsp.dll"}, {L"Plugins\\dsp.dll"}, false},
        {"without a description the archive is plain files, unpacked into the program folder", "<notes/>",
         {L"Docs\\a.txt", L"main.xml", L"tool.exe"}, {}, false},
    };
    const std::string dsp = e2e::ReadFileText(e2e::TestProgramFolder() + L"dsp_sampleecho.dll");
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        e2e::DeleteTree(UnpackFolder());
        const std::wstring program = e2e::ScratchFolder(L"Package");
        const std::wstring package = e2e::ScratchFolder(L"PackageFile") + L"Test.lwp";
        ASSERT_TRUE(e2e::WriteFileBytes(package, ZipBuilder::MakeZip({{"Package.xml", c.description},
                                                                        {"Docs/a.txt", "text", true},
                                                                        {"main.xml", skin},
                                                                        {"tool.exe", tool},
                                                                        {"SampleShell.dll", shell},
                                                                        {"dsp.dll", dsp}})));
        ASSERT_TRUE(e2e::WriteFileBytes(program + L"Start.exe", tool));
        ASSERT_TRUE(::CopyFileW((e2e::MediaFolder() + L"Listenwell\\PackageInstaller.exe").c_str(),
                                (program + L"PackageInstaller.exe").c_str(), FALSE));
        ::DeleteFileW(StartedLog().c_str());
        e2e::RegDeleteKeyTree(HKEY_CURRENT_USER, kRegistered);
        CInstallChangeLog changes;
        CInstallPackage::Context context{changes, HVString(program.c_str()), u"Sonora", u"Sonora 32",
                                         HVString((program + L"Start.exe").c_str()), nullptr, false, nullptr};
        EXPECT_TRUE(CInstallPackage(context).Install(HVString(package.c_str())));
        const auto where = [&](const wchar_t* file) { return file[0] == L'~' ? UnpackFolder() + (file + 1) : program + file; };
        for (const wchar_t* file : c.present)
            EXPECT_TRUE(e2e::PathExists(where(file))) << e2e::Utf8(file);
        for (const wchar_t* file : c.absent)
            EXPECT_FALSE(e2e::PathExists(where(file))) << e2e::Utf8(file);
        EXPECT_EQ(e2e::FolderExists(UnpackFolder()), c.unpackFolderKept);
        // START_SN doesn't wait for the product: its line may come a moment later.
        EXPECT_EQ(e2e::WaitForLines(StartedLog(), static_cast<int>(std::count(c.started.begin(), c.started.end(), '\n'))),
                  c.started);
        const std::string asked = e2e::ReadFileText(program + L"PackageInstaller.log");
        EXPECT_EQ(!asked.empty() && asked.find(c.installer) != std::string::npos, !c.installer.empty()) << asked;
        EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kRegistered, L"SampleShell.dll").has_value(), !c.installer.empty());
    }
    e2e::DeleteTree(UnpackFolder());
    e2e::RegDeleteKeyTree(HKEY_CURRENT_USER, kRegistered);
    e2e::RegDeleteKeyTree(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Halvard\\Listenwell\\Plugins");
    ::DeleteFileW(StartedLog().c_str());
}
