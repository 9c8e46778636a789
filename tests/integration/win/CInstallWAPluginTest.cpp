// The sample plug-ins of each kind through CInstallWAPlugin, against Wine's registry and files.
#include "integration/win/CInstallWAPlugin.h"

#include "changes/CInstallChangeLog.h"

#include "BoxAnswerer.h"
#include "E2ESupport.h"

#include <gtest/gtest.h>

namespace
{
using Kind = CInstallWAPlugin::Kind;
const std::wstring kPlugins = L"SOFTWARE\\Halvard\\Listenwell\\Plugins";
const std::wstring kOwnPlugins = L"Software\\Halvard\\Sonora 32\\Plugins";

// The plug-in records of the players start and end as a fresh machine has them.
class CInstallWAPluginTest : public e2e::FreshMachineTest
{
protected:
    HVString Folder() const { return HVString(folder_.c_str()); }
    HVString Sample(const wchar_t* name) const { return HVString((e2e::TestProgramFolder() + name).c_str()); }

    const std::wstring folder_ = e2e::ScratchFolder(L"WAPlugin");
    CInstallChangeLog changes_;
};
}   // namespace

TEST_F(CInstallWAPluginTest, EachKindGoesToItsFolderAndRecord)
{
    // An older record of the same plug-in: its "strPath" goes when the record is written.
    ASSERT_TRUE(e2e::RegSetString(HKEY_LOCAL_MACHINE, kPlugins + L"\\Input\\Sample Tracker Input", L"strPath",
                                  L"C:\\old\\in_sampletracker.dll"));

    const struct { const wchar_t* file; Kind asked; const wchar_t* kind; const wchar_t* name; } cases[] = {
        {L"in_sampletracker.dll", Kind::Input, L"Input", L"Sample Tracker Input"},
        {L"dsp_sampleecho.dll", Kind::Any, L"DSP", L"Sample Echo DSP"},
        {L"SampleReverb.dll", Kind::DSP, L"DSP", L"Sample Reverb (VST Plugin)"},
        // Named by its factory's effect class, not by its version resource ("Sample Chorus Module").
        {L"SampleChorus.vst3", Kind::Any, L"DSP", L"Sample Chorus (VST Plugin)"},
        {L"SampleRemote.dll", Kind::Any, L"RemoteControl", L"Sample Remote"},
    };
    // A running player is told about each new plug-in.
    const std::wstring told = folder_ + L"Told.txt";
    e2e::RunningProduct player(false, told);
    std::string expected;
    for (const auto& c : cases) {
        SCOPED_TRACE(e2e::Utf8(c.file));
        ASSERT_TRUE(CInstallWAPlugin(changes_, Folder(), nullptr).Install(Sample(c.file), c.asked));
        const std::wstring installed = folder_ + L"Plugins\\" + c.kind + L"\\" + c.file;
        EXPECT_TRUE(e2e::PathExists(installed));
        const std::wstring record = kPlugins + L"\\" + c.kind + L"\\" + c.name;
        EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, record, L"IVersion"), 4u);
        EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, record, L"Path"), installed);
        EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, record, L"Name"), c.name);
        EXPECT_FALSE(e2e::RegValueExists(HKEY_LOCAL_MACHINE, record, L"strPath"));
        EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, kPlugins + L"\\Uninstall\\" + c.name, L"Record"),
                  std::wstring(c.kind) + L"\\" + c.name);
        expected += "1|" + e2e::Utf8(installed) + "\n";
    }
    EXPECT_EQ(e2e::WaitForLines(told, 5), expected);
    const auto input = CInstallWAPlugin::Find(Kind::Input, u"Sample Tracker Input");
    ASSERT_TRUE(input.has_value());
    EXPECT_EQ(input->extensions, u"trk;trx;smp");
    // The player's own list is asked first, and names a plug-in once.
    ASSERT_TRUE(e2e::RegSetString(HKEY_CURRENT_USER, kOwnPlugins + L"\\Input\\Sample Tracker Input", L"Extensions", L"own"));
    ASSERT_TRUE(e2e::RegSetDword(HKEY_CURRENT_USER, kOwnPlugins + L"\\Input\\Sample Tracker Input", L"IVersion", 4));
    EXPECT_EQ(CInstallWAPlugin::Find(Kind::Input, u"Sample Tracker Input")->extensions, u"own");
    ASSERT_EQ(CInstallWAPlugin::List(Kind::Input).size(), 1u);
    EXPECT_EQ(CInstallWAPlugin::List(Kind::Input)[0].extensions, u"own");
    const std::wstring girder = kPlugins + L"\\RemoteControl\\Sample Remote";
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, girder, L"Version"), L"1.2");
    EXPECT_EQ(e2e::RegString(HKEY_LOCAL_MACHINE, girder, L"Plugin Description"), L"Sample infrared receiver");
    EXPECT_EQ(e2e::RegDword(HKEY_LOCAL_MACHINE, girder, L"GirderPlugin"), 1u);

    // A record of another layout counts as none.
    ASSERT_TRUE(e2e::RegSetDword(HKEY_LOCAL_MACHINE, kPlugins + L"\\DSP\\Sample Echo DSP", L"IVersion", 3));
    EXPECT_FALSE(CInstallWAPlugin::Find(Kind::DSP, u"Sample Echo DSP").has_value());
}

TEST_F(CInstallWAPluginTest, RefusalsAreToldAndLeaveNothingBehind)
{
    const struct { const wchar_t* file; Kind asked; const wchar_t* text; } cases[] = {
        {L"in_oldtracker.dll", Kind::Any,
         L"The input plugin 'Sample Tracker Input' is not the correct version.\r\n\r\nPlugin version: 3\r\nRequired version: 4"},
        {L"dsp_sampleecho.dll", Kind::Input, L"The plug-in 'Sample Echo DSP' is not of the expected kind."},
        {L"ShowBox.exe", Kind::Any, L"Cannot load plug-in.\r\n\r\nThe file is not a plug-in of a supported kind."},
        {L"missing.dll", Kind::Any, L"Cannot load plug-in.\r\n\r\n"},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(e2e::Utf8(c.file));
        e2e::BoxAnswerer answerer(L"OK");
        EXPECT_FALSE(CInstallWAPlugin(changes_, Folder(), nullptr).Install(Sample(c.file), c.asked));
        const e2e::WindowInfo& box = answerer.Join();
        EXPECT_EQ(box.title, L"Information");
        EXPECT_EQ(box.text.substr(0, std::wstring(c.text).size()), c.text);
    }
    EXPECT_FALSE(e2e::FolderExists(folder_ + L"Plugins"));
    EXPECT_FALSE(e2e::RegKeyExists(HKEY_LOCAL_MACHINE, kPlugins));
    EXPECT_TRUE(changes_.Changes().empty());
}
