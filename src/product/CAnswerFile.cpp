#include "product/CAnswerFile.h"

#include "foundation/HVLog.h"

#include <optional>
#include <vector>

namespace
{
const char* const kSource = "CAnswerFile::Apply";

std::optional<bool> ReadYesNo(const HVString& value)
{
    for (const char16_t* yes : {u"yes", u"1", u"true", u"on"})
        if (value.EqualsNoCase(yes))
            return true;
    for (const char16_t* no : {u"no", u"0", u"false", u"off"})
        if (value.EqualsNoCase(no))
            return false;
    return std::nullopt;
}

HVString YesNo(bool value) { return value ? u"yes" : u"no"; }

// The items of a list separated by "," or ";", blanks around them removed, empty ones dropped.
std::vector<HVString> Items(const HVString& value)
{
    std::vector<HVString> items;
    for (int32_t start = 0; start <= value.GetLength();) {
        int32_t end = value.FindOneOf(u",;", start);
        if (end == HVString::npos)
            end = value.GetLength();
        HVString item = value.Mid(start, end - start).Trim();
        if (!item.IsEmpty())
            items.push_back(item);
        start = end + 1;
    }
    return items;
}

HVString Join(const std::vector<HVString>& items)
{
    if (items.empty())
        return u"none";
    HVString text;
    for (const HVString& item : items)
        text += (text.IsEmpty() ? HVString() : HVString(u", ")) + item;
    return text;
}

// An extension as a registry key name takes it: a "." (added when missing) and then letters,
// digits, "-" or "_".
std::optional<HVString> Extension(HVString item)
{
    if (item[0] != u'.')
        item.Insert(0, u".");
    if (item.GetLength() < 2)
        return std::nullopt;
    for (int32_t i = 1; i < item.GetLength(); ++i) {
        const char16_t ch = item[i];
        const bool plain = (ch >= u'a' && ch <= u'z') || (ch >= u'A' && ch <= u'Z') || (ch >= u'0' && ch <= u'9') ||
                           ch == u'-' || ch == u'_';
        if (!plain)
            return std::nullopt;
    }
    return item;
}

struct ShortcutWord
{
    const char16_t* word;
    bool InstallAnswers::Shortcuts::*box;
};
constexpr ShortcutWord kShortcutWords[] = {
    {u"StartMenu", &InstallAnswers::Shortcuts::startMenu},
    {u"Desktop", &InstallAnswers::Shortcuts::desktop},
    {u"QuickLaunch", &InstallAnswers::Shortcuts::quickLaunch},
};

// One key of the file: what it takes (for the person editing it), how it is read into the
// options (false: a value it can't take) and how the run's choice is written (nullopt: no
// choice was made).
struct Key
{
    const char16_t* name;
    const char16_t* takes;
    bool (*read)(const HVString& value, InstallOptions& o);
    std::optional<HVString> (*write)(const InstallOptions& o);
};

// The switches that change what is installed: a key each, always written.
template <bool InstallOptions::*flag>
bool ReadFlag(const HVString& value, InstallOptions& o)
{
    const auto yes = ReadYesNo(value);
    if (yes)
        o.*flag = *yes;
    return yes.has_value();
}
template <bool InstallOptions::*flag>
std::optional<HVString> WriteFlag(const InstallOptions& o)
{
    return YesNo(o.*flag);
}

template <std::optional<bool> InstallAnswers::*answer>
bool ReadAnswer(const HVString& value, InstallOptions& o)
{
    const auto yes = ReadYesNo(value);
    if (yes)
        o.answers.*answer = *yes;
    return yes.has_value();
}
template <std::optional<bool> InstallAnswers::*answer>
std::optional<HVString> WriteAnswer(const InstallOptions& o)
{
    const std::optional<bool>& value = o.answers.*answer;
    return value ? std::optional<HVString>(YesNo(*value)) : std::nullopt;
}

// A text answer (a language code, a folder): anything but nothing. A language the setup
// folder doesn't have is found out, and logged, when the language is prepared.
template <std::optional<HVString> InstallAnswers::*answer>
bool ReadText(const HVString& value, InstallOptions& o)
{
    if (!value.IsEmpty())
        o.answers.*answer = value;
    return !value.IsEmpty();
}
template <std::optional<HVString> InstallAnswers::*answer>
std::optional<HVString> WriteText(const InstallOptions& o)
{
    return o.answers.*answer;
}

const Key kKeys[] = {
    {u"Language", u"a language code of the setup folder's Languages\\ (en: English)", ReadText<&InstallAnswers::language>,
     WriteText<&InstallAnswers::language>},
    {u"SetupType", u"Express or Custom",
     [](const HVString& value, InstallOptions& o) {
         if (!value.EqualsNoCase(u"Express") && !value.EqualsNoCase(u"Custom"))
             return false;
         o.answers.express = value.EqualsNoCase(u"Express");
         return true;
     },
     [](const InstallOptions& o) {
         return o.answers.express ? std::optional<HVString>(*o.answers.express ? u"Express" : u"Custom") : std::nullopt;
     }},
    {u"Portable", u"yes or no: a portable install (a Custom one)", ReadAnswer<&InstallAnswers::portable>,
     WriteAnswer<&InstallAnswers::portable>},
    {u"Dir", u"the destination folder", ReadText<&InstallAnswers::folder>, WriteText<&InstallAnswers::folder>},
    {u"Shortcuts", u"StartMenu, Desktop, QuickLaunch (separated by \",\"), or none",
     [](const HVString& value, InstallOptions& o) {
         InstallAnswers::Shortcuts chosen;
         for (const HVString& item : Items(value)) {
             if (item.EqualsNoCase(u"none"))
                 continue;
             const ShortcutWord* word = nullptr;
             for (const ShortcutWord& candidate : kShortcutWords)
                 if (item.EqualsNoCase(candidate.word))
                     word = &candidate;
             if (!word)
                 return false;
             chosen.*word->box = true;
         }
         o.answers.shortcuts = chosen;
         return true;
     },
     [](const InstallOptions& o) -> std::optional<HVString> {
         if (!o.answers.shortcuts)
             return std::nullopt;
         std::vector<HVString> words;
         for (const ShortcutWord& word : kShortcutWords)
             if ((*o.answers.shortcuts).*word.box)
                 words.push_back(word.word);
         return Join(words);
     }},
    {u"FileTypes", u"extensions (.mp3, .flac), or none",
     [](const HVString& value, InstallOptions& o) {
         std::vector<HVString> extensions;
         for (const HVString& item : Items(value)) {
             if (item.EqualsNoCase(u"none"))
                 continue;
             const auto extension = Extension(item);
             if (!extension)
                 return false;
             extensions.push_back(*extension);
         }
         o.answers.fileTypes = extensions;
         return true;
     },
     [](const InstallOptions& o) {
         return o.answers.fileTypes ? std::optional<HVString>(Join(*o.answers.fileTypes)) : std::nullopt;
     }},
    {u"RunAtEnd", u"yes or no: start Sonora when setup has finished", ReadAnswer<&InstallAnswers::runAtEnd>,
     WriteAnswer<&InstallAnswers::runAtEnd>},
    {u"NoAssociations", u"yes: leave the file associations as they are", ReadFlag<&InstallOptions::noAssociations>,
     WriteFlag<&InstallOptions::noAssociations>},
    {u"NoDependencies", u"yes: leave out the components Sonora depends on", ReadFlag<&InstallOptions::noDependencies>,
     WriteFlag<&InstallOptions::noDependencies>},
    {u"NoUpgrade", u"yes: leave the settings of an earlier version behind", ReadFlag<&InstallOptions::noUpgrade>,
     WriteFlag<&InstallOptions::noUpgrade>},
    {u"NoDriver", u"yes: leave out the audio driver", ReadFlag<&InstallOptions::noDriver>,
     WriteFlag<&InstallOptions::noDriver>},
    {u"DistributorID", u"recorded with the installation",
     [](const HVString& value, InstallOptions& o) {
         o.distributorId = value;
         return true;
     },
     [](const InstallOptions& o) { return std::optional<HVString>(o.distributorId); }},
};

const Key* FindKey(const HVString& name)
{
    for (const Key& key : kKeys)
        if (name.EqualsNoCase(key.name))
            return &key;
    return nullptr;
}
}

int CAnswerFile::Apply(const HVString& text, InstallOptions& options)
{
    int problems = 0;
    const auto problem = [&](const char16_t* format, int line, const HVString& what) {
        HVLog::Write(HVLog::kWarning, kSource, format, line, what);
        ++problems;
    };
    bool inSetup = false;
    int number = 0;
    for (int32_t start = 0; start < text.GetLength(); ++number) {
        int32_t end = text.Find(u'\n', start);
        if (end == HVString::npos)
            end = text.GetLength();
        HVString line = text.Mid(start, end - start).Trim();
        start = end + 1;
        if (line.IsEmpty() || line[0] == u';' || line[0] == u'#')
            continue;
        if (line[0] == u'[') {
            inSetup = line.EqualsNoCase(HVString(u"[") + kSection + u"]");
            continue;
        }
        const int32_t equals = line.Find(u'=');
        if (equals == HVString::npos) {
            problem(u"Line %d: no key: %s", number + 1, line);
            continue;
        }
        if (!inSetup) {
            problem(u"Line %d: %s is outside [Setup]: not read", number + 1, line);
            continue;
        }
        const HVString name = line.Left(equals).Trim();
        const HVString value = line.Mid(equals + 1).Trim();
        const Key* key = FindKey(name);
        if (!key)
            problem(u"Line %d: unknown key %s ignored", number + 1, name);
        else if (!key->read(value, options))
            problem(u"Line %d: %s: the value can't be read, the default is kept", number + 1, name + u"=" + value);
    }
    // The pages' own rules: a portable install is a Custom one.
    if (options.answers.portable.value_or(false)) {
        if (options.answers.express.value_or(false)) {
            HVLog::Write(HVLog::kWarning, kSource, u"Portable=yes needs SetupType=Custom: not portable");
            ++problems;
            options.answers.portable = false;
        } else {
            options.answers.express = false;
        }
    }
    if (options.answers.express)
        options.express = *options.answers.express;
    if (options.answers.portable)
        options.portable = *options.answers.portable;
    if (options.answers.folder)
        options.destinationFolder = *options.answers.folder;
    return problems;
}

HVString CAnswerFile::Write(const InstallOptions& options)
{
    HVString text = u"; Answers for the Sonora Install Wizard, written by /SaveInf.\r\n"
                    u"; Replay them with: InstallWizard.exe /LoadInf=\"<this file>\" (add /Silent to ask nothing).\r\n"
                    u"; Edit freely: a key that is left out, or commented out with \";\", takes the setup's\r\n"
                    u"; default, and switches on the command line win over the keys here.\r\n";
    text.AppendFormat(u"[%s]\r\n", kSection);
    for (const Key& key : kKeys) {
        const std::optional<HVString> value = key.write(options);
        text.AppendFormat(u"; %s%s\r\n%s%s=%s\r\n", key.takes, value ? u"" : u" (not chosen in this run)",
                          value ? u"" : u";", key.name, value.value_or(HVString()));
    }
    return text;
}
