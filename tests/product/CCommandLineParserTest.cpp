#include "product/CCommandLineParser.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
// The options' flags as one text, so a table row can say what it expects in one string.
std::string Flags(const InstallOptions& o)
{
    std::string s;
    auto add = [&](bool on, const char* name) {
        if (on)
            s += std::string(s.empty() ? "" : " ") + name;
    };
    add(o.silent, "Silent");
    add(o.suppressMessages, "SuppressMessages");
    add(o.upgrade, "Upgrade");
    add(o.noAssociations, "NoAssociations");
    add(o.noDependencies, "NoDependencies");
    add(o.noUpgrade, "NoUpgrade");
    add(o.noDriver, "NoDriver");
    add(o.noRun, "NoRun");
    add(o.regFileAssociations, "RegFileAssociations");
    add(o.log, "Log");
    add(o.help, "Help");
    add(!o.loadInfPath.IsEmpty(), ("LoadInf=" + o.loadInfPath.ToUtf8()).c_str());
    add(!o.saveInfPath.IsEmpty(), ("SaveInf=" + o.saveInfPath.ToUtf8()).c_str());
    return s;
}

struct Case
{
    const char16_t* commandLine;
    const char* flags;
    const char16_t* distributorId;
    const char16_t* logPath;
    const char16_t* destination = u"";
};

const Case kCases[] = {
    {u"", "", u"", u""},
    {u"\"C:\\Setup\\InstallWizard.exe\"", "", u"", u""},
    // Text before the first "/" is the program's path, even when it looks like an option.
    {u"Silent /Upgrade", "Upgrade", u"", u""},
    {u"\"Z:\\media\\InstallWizard.exe\" /Silent /NoRun", "Silent NoRun", u"", u""},
    {u"x /silent /NOASSOCIATIONS", "Silent NoAssociations", u"", u""},
    {u"x /Silent /suppressmessages /Log=C:\\d.log", "Silent SuppressMessages Log", u"", u"C:\\d.log"},
    {u"x /NoAssociations/NoDependencies/NoUpgrade/NoDriver/NoRun",
     "NoAssociations NoDependencies NoUpgrade NoDriver NoRun", u"", u""},
    // Prefix match: the rest of a piece after a name is ignored.
    {u"x /SilentPlease /Upgraded", "Silent Upgrade", u"", u""},
    // "Upgrade" never catches "NoUpgrade": the piece must start with the name.
    {u"x /NoUpgrade", "NoUpgrade", u"", u""},
    {u"x /regfileassociations /NoRun", "NoRun RegFileAssociations", u"", u""},
    {u"x /Foo /Bar=1 // /", "", u"", u""},
    {u"x /DistributorID ACME-42  /Silent", "Silent", u"ACME-42", u""},
    {u"x /DistributorIDACME", "", u"ACME", u""},
    {u"x /DistributorID", "", u"", u""},
    {u"x /DistributorID    ", "", u"", u""},
    {u"x /DistributorID A /DistributorID B", "", u"B", u""},
    {u"x /Log", "Log", u"", u""},
    {u"x /Log=C:\\Temp\\setup.log /Silent", "Silent Log", u"", u"C:\\Temp\\setup.log"},
    {u"x /Log C:\\Temp\\setup.log", "Log", u"", u"C:\\Temp\\setup.log"},
    {u"x /Log \"C:\\My Logs\\setup.log\"", "Log", u"", u"C:\\My Logs\\setup.log"},
    {u"x /Log = \"C:\\a b.log\" ", "Log", u"", u"C:\\a b.log"},
    {u"x /?", "Help", u"", u""},
    {u"x /help", "Help", u"", u""},
    {u"x /Dir=C:\\Apps\\Sonora /Silent", "Silent", u"", u"", u"C:\\Apps\\Sonora"},
    {u"x /dir \"D:\\My Apps\\Sonora\\\" /NoRun", "NoRun", u"", u"", u"D:\\My Apps\\Sonora\\"},
    // Neither of the two "Di" switches takes the other's piece.
    {u"x /DistributorID ACME /Dir = E:\\S", "", u"ACME", u"", u"E:\\S"},
    {u"x /Dir", "", u"", u""},
    {u"x /SaveInf=C:\\a.ini /loadinf \"D:\\My Answers\\b.ini\" /Silent", "Silent LoadInf=D:\\My Answers\\b.ini SaveInf=C:\\a.ini", u"", u""},
};

TEST(CCommandLineParser, ReadsEachOptionAndIgnoresTheRest)
{
    for (const Case& c : kCases) {
        InstallOptions options;
        const auto ignored = CCommandLineParser::Parse(c.commandLine, options);
        const std::string line = HVString(c.commandLine).ToUtf8();
        EXPECT_EQ(Flags(options), c.flags) << line;
        EXPECT_EQ(options.distributorId, c.distributorId) << line;
        EXPECT_EQ(options.logPath, c.logPath) << line;
        EXPECT_EQ(options.destinationFolder, c.destination) << line;
        EXPECT_EQ(ignored.empty(), line.find("/Foo") == std::string::npos) << line;
        // Only the command line's own fields are touched.
        EXPECT_FALSE(options.express || options.autoInstall || options.portable || options.allowDowngrade) << line;
        EXPECT_TRUE(options.supportFolder.IsEmpty()) << line;
    }
}

TEST(CCommandLineParser, ReportsThePiecesItIgnored)
{
    InstallOptions options;
    const auto ignored = CCommandLineParser::Parse(u"setup.exe /Foo /Silent /-x", options);
    ASSERT_EQ(ignored.size(), 2u);
    EXPECT_EQ(ignored[0], u"Foo ");
    EXPECT_EQ(ignored[1], u"-x");
}

TEST(CCommandLineParser, JunkNeverSetsAnything)
{
    // Pieces of every kind of character, cut by slashes, and long runs of slashes: parsing
    // must neither fail nor crash nor take a piece for an option.
    std::u16string junk;
    for (char16_t c = 1; c < 0x3000; c += 7)
        junk += (junk.size() % 5 == 4) ? u'/' : c;
    junk += std::u16string(10000, u'/') + u"/Silen/NoRu/Distributor";
    InstallOptions options;
    CCommandLineParser::Parse(HVString(junk), options);
    EXPECT_EQ(Flags(options), "");
    EXPECT_TRUE(options.distributorId.IsEmpty());
}

TEST(CCommandLineParser, NoNameIsAPrefixOfALaterOne)
{
    // A piece is matched against the names in order, so a name that began a later one would
    // hide it.
    const auto& options = CCommandLineParser::Options();
    for (size_t i = 0; i < options.size(); ++i)
        for (size_t j = i + 1; j < options.size(); ++j)
            EXPECT_FALSE(HVString(options[j].name).StartsWithNoCase(options[i].name))
                << HVString(options[i].name).ToUtf8() << " hides " << HVString(options[j].name).ToUtf8();
}

TEST(CCommandLineParser, HelpNamesEverySwitch)
{
    const HVString help = CCommandLineParser::HelpText();
    for (const auto& option : CCommandLineParser::Options())
        EXPECT_NE(help.Find(HVString(u"/") + option.name), HVString::npos) << HVString(option.name).ToUtf8();
}
}
