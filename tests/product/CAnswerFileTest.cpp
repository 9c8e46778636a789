#include "product/CAnswerFile.h"

#include "RecordingLogger.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
// The options an answer file can set, as one line a row can spell out.
std::string Summary(const InstallOptions& o)
{
    const InstallAnswers& a = o.answers;
    const auto yes = [](const std::optional<bool>& value) { return value ? (*value ? "yes" : "no") : "-"; };
    std::string s = "lang=" + (a.language ? a.language->ToUtf8() : "-") + " express=" + yes(a.express) +
                    " portable=" + yes(a.portable) + " dir=" + o.destinationFolder.ToUtf8() + " shortcuts=";
    if (a.shortcuts)
        s += std::string(a.shortcuts->startMenu ? "S" : "") + (a.shortcuts->desktop ? "D" : "") +
             (a.shortcuts->quickLaunch ? "Q" : "") + (a.shortcuts->startMenu || a.shortcuts->desktop ||
                                                      a.shortcuts->quickLaunch ? "" : "none");
    else
        s += "-";
    s += " types=";
    if (a.fileTypes)
        for (const HVString& type : *a.fileTypes)
            s += type.ToUtf8();
    else
        s += "-";
    s += std::string(" run=") + yes(a.runAtEnd) + " flags=" + (o.noAssociations ? "A" : "") +
         (o.noDependencies ? "D" : "") + (o.noUpgrade ? "U" : "") + (o.noDriver ? "R" : "") +
         " id=" + o.distributorId.ToUtf8() + (o.express ? " EXPRESS" : "") + (o.portable ? " PORTABLE" : "");
    return s;
}

constexpr const char* kDefaults = "lang=- express=- portable=- dir= shortcuts=- types=- run=- flags= id=";

struct Case
{
    const char16_t* text;
    const char* summary;
    int problems;
};

const Case kCases[] = {
    {u"", kDefaults, 0},
    {u"; only a comment\r\n[Setup]\r\n\r\n# another\r\n", kDefaults, 0},
    {u"[Setup]\r\nLanguage=de\r\nSetupType=Custom\r\nPortable=yes\r\nDir=E:\\Sonora\\\r\nShortcuts=StartMenu, QuickLaunch\r\n"
     u"FileTypes=.mp3; flac\r\nRunAtEnd=no\r\nNoAssociations=1\r\nNoDependencies=true\r\nNoUpgrade=on\r\nNoDriver=yes\r\n"
     u"DistributorID= ACME-7 \r\n",
     "lang=de express=no portable=yes dir=E:\\Sonora\\ shortcuts=SQ types=.mp3.flac run=no flags=ADUR id=ACME-7 PORTABLE", 0},
    // Keys and words without regard to case, blanks around them, Unix line ends.
    {u"[SETUP]\n  setuptype = EXPRESS \nshortcuts=none\nfiletypes=NONE\nrunatend=No\n",
     "lang=- express=yes portable=- dir= shortcuts=none types= run=no flags= id= EXPRESS", 0},
    // Portable is a Custom install: it implies Custom, and Express refuses it.
    {u"[Setup]\nPortable=yes\n", "lang=- express=no portable=yes dir= shortcuts=- types=- run=- flags= id= PORTABLE", 0},
    {u"[Setup]\nSetupType=Express\nPortable=yes\n",
     "lang=- express=yes portable=no dir= shortcuts=- types=- run=- flags= id= EXPRESS", 1},
    // Each bad value, unknown key or stray line is one problem; the key keeps its default.
    {u"[Setup]\nSetupType=Typical\nPortable=maybe\nDir=\nShortcuts=StartMenu,Taskbar\nFileTypes=.mp3,..\\x\n"
     u"RunAtEnd=2\nNoDriver=\nLanguage=\nColour=blue\njust words\n",
     kDefaults, 10},
    // Keys outside [Setup] are not read; the last of two wins.
    {u"NoDriver=yes\n[Other]\nNoUpgrade=yes\n[Setup]\nDir=C:\\A\\\nDir=C:\\B\\\n",
     "lang=- express=- portable=- dir=C:\\B\\ shortcuts=- types=- run=- flags= id=", 2},
};

TEST(CAnswerFile, ReadsEachKeyAndKeepsTheDefaultForWhatItCantRead)
{
    for (const Case& c : kCases) {
        RecordingLogger log;
        InstallOptions options;
        EXPECT_EQ(CAnswerFile::Apply(c.text, options), c.problems) << HVString(c.text).ToUtf8();
        EXPECT_EQ(Summary(options), c.summary) << HVString(c.text).ToUtf8();
        EXPECT_EQ(static_cast<int>(log.Lines().size()), c.problems) << HVString(c.text).ToUtf8();
    }
}

TEST(CAnswerFile, WhatItWritesReadsBackTheSame)
{
    InstallOptions chosen;
    ASSERT_EQ(CAnswerFile::Apply(kCases[2].text, chosen), 0);
    InstallOptions replayed;
    EXPECT_EQ(CAnswerFile::Apply(CAnswerFile::Write(chosen), replayed), 0);
    EXPECT_EQ(Summary(replayed), Summary(chosen));

    // Choices not made are there for a person to fill in, commented out: they read as defaults.
    InstallOptions none;
    const HVString text = CAnswerFile::Write(none);
    EXPECT_NE(text.Find(u"\r\n;SetupType=\r\n"), HVString::npos) << text.ToUtf8();
    EXPECT_NE(text.Find(u"\r\nNoDriver=no\r\n"), HVString::npos) << text.ToUtf8();
    InstallOptions fresh;
    EXPECT_EQ(CAnswerFile::Apply(text, fresh), 0);
    EXPECT_EQ(Summary(fresh), kDefaults);
}
}  // namespace
