// CInstallPackage on packages made for each case, unattended (no questions), into a scratch
// program folder.
#include "integration/win/CInstallPackage.h"

#include "changes/CInstallChangeLog.h"

#include "E2ESupport.h"
#include "ZipBuilder.h"

#include <gtest/gtest.h>

namespace
{
std::wstring UnpackFolder() { return e2e::TempFolder() + L"Install Wizard Package\\"; }
}   // namespace

TEST(CInstallPackageTest, PackageWordsAndTheirOptions)
{
    const std::string skin = "<LWMS/>";
    const struct
    {
        const char* what;
        std::string description;
        std::vector<const wchar_t*> present;   // relative to the program folder
        std::vector<const wchar_t*> absent;
        bool unpackFolderKept;
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
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(c.what);
        e2e::DeleteTree(UnpackFolder());
        const std::wstring program = e2e::ScratchFolder(L"Package");
        const std::wstring package = e2e::ScratchFolder(L"PackageFile") + L"Test.lwp";
        ASSERT_TRUE(e2e::WriteFileBytes(package, ZipBuilder::MakeZip({{"Package.xml", c.description},
                                                                        {"Docs/a.txt", "text", true},
                                                                        {"main.xml", skin}})));
        CInstallChangeLog changes;
        CInstallPackage::Context context{changes, HVString(program.c_str()), u"Sonora", u"Sonora 32", HVString(),
                                         nullptr, false, nullptr};
        EXPECT_TRUE(CInstallPackage(context).Install(HVString(package.c_str())));
        for (const wchar_t* file : c.present)
            EXPECT_TRUE(e2e::PathExists(program + file)) << e2e::Utf8(file);
        for (const wchar_t* file : c.absent)
            EXPECT_FALSE(e2e::PathExists(program + file)) << e2e::Utf8(file);
        EXPECT_EQ(e2e::FolderExists(UnpackFolder()), c.unpackFolderKept);
        EXPECT_TRUE(e2e::PathExists(L"C:\\windows\\system32\\kernel32.dll"));
    }
    e2e::DeleteTree(UnpackFolder());
}
