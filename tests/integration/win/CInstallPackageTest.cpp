// CInstallPackage on packages made for each case, unattended (no questions), into a scratch
// program folder.
#include "integration/win/CInstallPackage.h"

#include "changes/CInstallChangeLog.h"

#include "E2ESupport.h"
#include "RecordingLogger.h"
#include "ZipBuilder.h"

#include <gtest/gtest.h>

#include <cstring>

#include <algorithm>
#include <functional>

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
        {"flat layout: copy by command word, macros in Param",
         "<LWPF><Package><HasActions>1</HasActions><File1>a.txt</File1><File1Action1>COPY_PLUGINDIR</File1Action1>"
         "<File2>main.xml</File2><File2Action1 Param=\"[PROGRAMPATH]Extra\">COPY_DIRECTORY</File2Action1></Package></LWPF>",
         {L"Plugins\\a.txt", L"Extra\\main.xml"}, {}, false},
        {"EXECUTE waits for the file run with its Param; DELETE_ORIGINAL makes a copy a move",
         "<LWPF><Actions>DONT_CLEANUP</Actions><FileEntry><File>tool.exe</File><Action Command=\"EXECUTE\" Param=\"/quiet\"/>"
         "</FileEntry><FileEntry><File>Docs/a.txt</File><Action Command=\"COPY_HELPDIR\"/><Action Command=\"DELETE_ORIGINAL\"/>"
         "</FileEntry></LWPF>",
         {L"Help\\a.txt", L"~tool.exe"}, {L"~a.txt"}, true, "{unpack}tool.exe|/quiet\r\n"},
        {"INSTALL hands the file to the package installer, REGISTER calls its DllRegisterServer, START_SN starts the product",
         "<LWPF><FileEntry><File>main.xml</File><Action Command=\"INSTALL\"/></FileEntry>"
         "<FileEntry><File>SampleShell.dll</File><Action Command=\"REGISTER\"/><Action Command=\"START_SN\"/></FileEntry></LWPF>",
         {}, {}, false, "{program}Start.exe|\r\n", "/Q /Install \""},
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
        // START_SN doesn't wait for the product: its line may come a moment later. The program
        // started notes its full path.
        std::string started = c.started;
        for (const auto& [mark, folder] : {std::pair{"{unpack}", UnpackFolder()}, std::pair{"{program}", program}})
            if (const size_t at = started.find(mark); at != std::string::npos)
                started.replace(at, std::strlen(mark), e2e::Utf8(folder));
        EXPECT_EQ(e2e::WaitForLines(StartedLog(), static_cast<int>(std::count(started.begin(), started.end(), '\n'))), started);
        const std::string asked = e2e::ReadFileText(program + L"PackageInstaller.log");
        EXPECT_EQ(!asked.empty() && asked.find(c.installer) != std::string::npos, !c.installer.empty()) << asked;
        EXPECT_EQ(e2e::RegString(HKEY_CURRENT_USER, kRegistered, L"SampleShell.dll").has_value(), !c.installer.empty());
    }
    e2e::DeleteTree(UnpackFolder());
    e2e::RegDeleteKeyTree(HKEY_CURRENT_USER, kRegistered);
    e2e::RegDeleteKeyTree(HKEY_LOCAL_MACHINE, L"SOFTWARE\\Halvard\\Listenwell\\Plugins");
    ::DeleteFileW(StartedLog().c_str());
}

// Each way out of the folder a word writes to: refused whole, nothing written or deleted in the
// program folder, in a folder that stands for the user's music, or in System32.
TEST(CInstallPackageTest, NamesThatLeadOutsideTheirFolderRefuseThePackageAndWriteNothing)
{
    using Entries = std::vector<ZipBuilder::Entry>;
    const auto unzipWith = [](Entries members) {
        members.push_back({"Package.xml", "<LWPF><Actions>UNZIPDIR</Actions></LWPF>"});
        return members;
    };
    const auto described = [](const std::string& body) {
        return Entries{{"Package.xml", "<LWPF>" + body + "</LWPF>"}, {"main.xml", "<LWMS/>"}, {"version.dll", "evil"},
                       {"in_sampletracker.dll", e2e::ReadFileText(e2e::TestProgramFolder() + L"in_sampletracker.dll")}};
    };
    const std::string skin = "<Actions>INSTALLSKIN</Actions><Package><Name>";
    Entries manyDescriptions;
    for (int i = 0; i < 600; ++i)
        manyDescriptions.push_back({std::to_string(i) + ".xml", "<Other>" + std::string(8000, ' ') + "</Other>", true});
    const struct
    {
        const char* what;
        std::function<Entries(const std::wstring& program, const std::wstring& outside)> package;  // arranges the machine too
        const char* refused;  // the name the log gives
    } cases[] = {
        {"a skin named into System32", [&](auto&, auto&) { return described(skin + "..\\..\\..\\..\\..\\..\\..\\..\\..\\Windows\\System32</Name></Package>"); },
         "Windows\\System32"},
        {"a file entry that climbs", [&](auto&, auto&) { return described("<FileEntry><File>../main.xml</File><Action Command=\"COPY_PLUGINDIR\"/></FileEntry>"); },
         "../main.xml"},
        {"a folder copied outside the program folder", [&](auto&, const std::wstring& outside) {
             return described("<FileEntry><File>main.xml</File><Action Command=\"COPY_DIRECTORY\" Param=\"" + e2e::Utf8(outside) + "\"/></FileEntry>"); },
         "PackageOutside"},
        {"a folder deleted outside the program folder", [&](auto&, auto&) {
             return described("<FileEntry><File>x</File><Action Command=\"DELETE_DIRECTORY\" Param=\"C:\\windows\\system32\"/></FileEntry>"); },
         "system32"},
        {"two names that differ only in Cyrillic case", [&](auto&, auto&) {
             return unzipWith({{"\xD0\x94.dll", "first", false, -1, 0, 0x800}, {"\xD0\xB4.dll", "second", false, -1, 0, 0x800}}); },
         "is in the archive twice"},
        {"a member named by another file's short name", [&](const std::wstring& program, auto&) {
             EXPECT_TRUE(e2e::WriteFileBytes(program + L"PackageInstaller.exe", "original"));
             return unzipWith({{e2e::Utf8(e2e::ShortFileName(program + L"PackageInstaller.exe")), "evil"}}); },
         "is another name of"},
        {"a member that climbs out of the unpack folder", [&](auto&, auto&) { return unzipWith({{"../../Escaped.txt", "evil"}}); },
         "would leave the unpack folder"},
        {"600 root .xml files before the description", [&](auto&, auto&) { return unzipWith(manyDescriptions); },
         "No description within the first 4194304 bytes"},
        {"a folder deleted through a junction", [&](const std::wstring& program, const std::wstring& outside) {
             EXPECT_TRUE(e2e::MakeFolderLink(program + L"Data", outside));
             return described("<FileEntry><File>x</File><Action Command=\"DELETE_DIRECTORY\" Param=\"[PROGRAMPATH]Data\"/></FileEntry>"); },
         "is a junction or link"},
        {"a plug-in copied through a junction", [&](const std::wstring& program, const std::wstring& outside) {
             EXPECT_TRUE(e2e::MakeFolder(program + L"Plugins") && e2e::MakeFolderLink(program + L"Plugins\\Input", outside));
             return described("<FileEntry><File>in_sampletracker.dll</File><Action Command=\"REG_WA_IN\"/></FileEntry>"); },
         "is a junction or link"},
        {"a skin copied through a junction", [&](const std::wstring& program, const std::wstring& outside) {
             EXPECT_TRUE(e2e::MakeFolder(program + L"FullSkins"));
             EXPECT_TRUE(e2e::MakeFolderLink(program + L"FullSkins\\Standard View", outside));
             return described(skin + "Plain</Name></Package>"); },
         "is a junction or link"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        e2e::DeleteTree(UnpackFolder());
        const std::wstring program = e2e::ScratchFolder(L"Package");
        const std::wstring outside = e2e::ScratchFolder(L"PackageOutside");
        ASSERT_TRUE(!program.empty() && e2e::WriteFileBytes(outside + L"song.mp3", "music"));
        const std::wstring package = e2e::ScratchFolder(L"PackageFile") + L"Test.lwp";
        ASSERT_TRUE(e2e::WriteFileBytes(package, ZipBuilder::MakeZip(c.package(program, outside))));
        const auto before = e2e::TreeContents({program, outside});
        RecordingLogger log;
        CInstallChangeLog changes;
        CInstallPackage::Context context{changes, HVString(program.c_str()), u"Sonora", u"Sonora 32", HVString(),
                                         nullptr, false, nullptr};
        EXPECT_FALSE(CInstallPackage(context).Install(HVString(package.c_str())));
        EXPECT_EQ(e2e::TreeContents({program, outside}), before);
        EXPECT_TRUE(log.Has(0, c.refused)) << testing::PrintToString(log.Texts());
        EXPECT_FALSE(e2e::PathExists(L"C:\\windows\\system32\\main.xml") || e2e::PathExists(e2e::TempFolder() + L"..\\Escaped.txt"));
        EXPECT_NE(e2e::ReadFileText(L"C:\\windows\\system32\\version.dll"), "evil");
        EXPECT_FALSE(e2e::FolderExists(UnpackFolder()));
        for (const wchar_t* link : {L"Data", L"FullSkins\\Standard View", L"Plugins\\Input"})
            EXPECT_TRUE(e2e::RemoveFolderLink(program + link));
    }
}
