// The sample plug-ins of each kind through CInstallWAPlugin, against Wine's registry and files.
#include "integration/win/CInstallWAPlugin.h"

#include "engine/CInstallChangeLog.h"
#include "foundation/win/HVRegKey.h"

#include "BoxAnswerer.h"
#include "E2ESupport.h"

#include <gtest/gtest.h>

namespace
{
const HVString kPlugins = u"SOFTWARE\\Halvard\\Listenwell\\Plugins";

void RemovePluginRecords()
{
    HVRegKey listenwell;
    if (listenwell.Open(HKEY_LOCAL_MACHINE, u"SOFTWARE\\Halvard\\Listenwell", KEY_ALL_ACCESS))
        listenwell.DeleteSubKeyTree(u"Plugins");
}

class CInstallWAPluginTest : public ::testing::Test
{
protected:
    void SetUp() override
    {
        RemovePluginRecords();
        folder_ = e2e::ScratchFolder(L"WAPlugin");
    }
    void TearDown() override { RemovePluginRecords(); }

    HVString Folder() const { return HVString(folder_.c_str()); }
    HVString Sample(const wchar_t* name) const { return HVString((e2e::TestProgramFolder() + name).c_str()); }

    std::wstring folder_;
    CInstallChangeLog changes_;
};
}   // namespace

TEST_F(CInstallWAPluginTest, EachKindGoesToItsFolderAndRecord)
{
    // An older record of the same plug-in: its "strPath" goes when the record is written.
    HVRegKey old;
    ASSERT_TRUE(old.Create(HKEY_LOCAL_MACHINE, kPlugins + u"\\Input\\Sample Tracker Input"));
    old.SetString(u"strPath", u"C:\\old\\in_sampletracker.dll");
    old.Close();

    const struct
    {
        const wchar_t* file;
        CInstallWAPlugin::Kind asked;
        const char16_t* kind;
        const char16_t* name;
    } cases[] = {
        {L"in_sampletracker.dll", CInstallWAPlugin::Kind::Input, u"Input", u"Sample Tracker Input"},
        {L"dsp_sampleecho.dll", CInstallWAPlugin::Kind::Any, u"DSP", u"Sample Echo DSP"},
        {L"SampleReverb.dll", CInstallWAPlugin::Kind::DSP, u"DSP", u"Sample Reverb (VST Plugin)"},
        {L"SampleRemote.dll", CInstallWAPlugin::Kind::Any, u"RemoteControl", u"Sample Remote"},
    };
    // A running player is told about each new plug-in.
    const std::wstring told = folder_ + L"Told.txt";
    e2e::RunningProduct player(false, told);
    std::string expected;
    for (const auto& c : cases) {
        SCOPED_TRACE(e2e::Utf8(c.file));
        CInstallWAPlugin installer(changes_, Folder(), nullptr);
        ASSERT_TRUE(installer.Install(Sample(c.file), c.asked));
        const HVString installed = Folder() + u"Plugins\\" + c.kind + u"\\" + HVString(c.file);
        EXPECT_NE(::GetFileAttributesW(installed.w()), INVALID_FILE_ATTRIBUTES);
        HVRegKey record;
        ASSERT_TRUE(record.Open(HKEY_LOCAL_MACHINE, kPlugins + u"\\" + c.kind + u"\\" + c.name));
        DWORD layout = 0;
        HVString path, name;
        EXPECT_TRUE(record.QueryDWORD(u"IVersion", layout) && layout == 4);
        EXPECT_TRUE(record.QueryString(u"Path", path) && path == installed);
        EXPECT_TRUE(record.QueryString(u"Name", name) && name == c.name);
        EXPECT_FALSE(record.HasValue(u"strPath"));
        expected += "1|" + installed.ToUtf8() + "\n";
    }
    EXPECT_EQ(e2e::WaitForLines(told, 4), expected);
    const auto input = CInstallWAPlugin::Find(CInstallWAPlugin::Kind::Input, u"Sample Tracker Input");
    ASSERT_TRUE(input.has_value());
    EXPECT_EQ(input->extensions, u"trk;trx;smp");
    HVRegKey girder;
    ASSERT_TRUE(girder.Open(HKEY_LOCAL_MACHINE, kPlugins + u"\\RemoteControl\\Sample Remote"));
    HVString version, description;
    DWORD mark = 0;
    EXPECT_TRUE(girder.QueryString(u"Version", version) && version == u"1.2");
    EXPECT_TRUE(girder.QueryString(u"Plugin Description", description) && description == u"Sample infrared receiver");
    EXPECT_TRUE(girder.QueryDWORD(u"GirderPlugin", mark) && mark == 1);

    // A record of another layout counts as none.
    HVRegKey record;
    ASSERT_TRUE(record.Open(HKEY_LOCAL_MACHINE, kPlugins + u"\\DSP\\Sample Echo DSP", KEY_ALL_ACCESS));
    record.SetDWORD(u"IVersion", 3);
    EXPECT_FALSE(CInstallWAPlugin::Find(CInstallWAPlugin::Kind::DSP, u"Sample Echo DSP").has_value());
}

TEST_F(CInstallWAPluginTest, RefusalsAreToldAndLeaveNothingBehind)
{
    const struct
    {
        const wchar_t* file;
        CInstallWAPlugin::Kind asked;
        const wchar_t* text;
    } cases[] = {
        {L"in_oldtracker.dll", CInstallWAPlugin::Kind::Any,
         L"The input plugin 'Sample Tracker Input' is not the correct version.\r\n\r\nPlugin version: 3\r\nRequired version: 4"},
        {L"dsp_sampleecho.dll", CInstallWAPlugin::Kind::Input, L"The plug-in 'Sample Echo DSP' is not of the expected kind."},
        {L"ShowBox.exe", CInstallWAPlugin::Kind::Any, L"Cannot load plug-in.\r\n\r\nThe file is not a plug-in of a supported kind."},
        {L"missing.dll", CInstallWAPlugin::Kind::Any, L"Cannot load plug-in.\r\n\r\n"},
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
    EXPECT_FALSE(HVRegKey::KeyExists(HKEY_LOCAL_MACHINE, kPlugins));
    EXPECT_TRUE(changes_.Changes().empty());
}
