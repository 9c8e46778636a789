#include "install/CTranslationService.h"

#include "foundation/HVLog.h"
#include "foundation/HVTextFileReader.h"
#include "foundation/HVXMLDocument.h"

#include <algorithm>

namespace
{
bool IsSpaceOrTab(char16_t ch) { return ch == u' ' || ch == u'\t'; }
bool IsLineBreak(char16_t ch) { return ch == u'\r' || ch == u'\n'; }

// Where the part that starts at `start` ends: after the next run of line breaks, or at the
// end of the text.
size_t PartEnd(std::u16string_view text, size_t start)
{
    size_t i = text.find_first_of(u"\r\n", start);
    if (i == std::u16string_view::npos)
        return text.size();
    while (i < text.size() && IsLineBreak(text[i]))
        ++i;
    return i;
}

HVString FileNameOf(const HVString& path)
{
    const int32_t slash = std::max(path.ReverseFind(u'\\'), path.ReverseFind(u'/'));
    return slash < 0 ? path : path.Mid(slash + 1);
}

HVString BaseNameOf(const HVString& path)
{
    HVString name = FileNameOf(path);
    const int32_t dot = name.ReverseFind(u'.');
    return dot > 0 ? name.Left(dot) : name;
}

// Checks the root of a language document and reads its name and code. A file without a name
// is called by its file name, so that it can still be told apart in the dialog.
bool ReadRoot(const HVXMLDocument& doc, const HVString& source, HVXMLDocument::Elem& root, CLanguageInfo& info)
{
    if (!doc.IsWellFormed()) {
        HVLog::Write(HVLog::kWarning, "CTranslationService::Load", u"%s is not a well-formed language file: %s", source,
                     doc.GetError());
        return false;
    }
    root = doc.Select(u"/*");
    if (root == 0 || doc.GetElemTagName(root) != CTranslationService::kRootName) {
        HVLog::Write(HVLog::kWarning, "CTranslationService::Load", u"%s is not a language file (root <%s>)", source,
                     root == 0 ? HVString() : doc.GetElemTagName(root));
        return false;
    }
    info.name = doc.GetElemAttrib(root, u"name");
    info.name.Trim();
    if (info.name.IsEmpty())
        info.name = BaseNameOf(source);
    info.code = doc.GetElemAttrib(root, u"code");
    info.code.Trim();
    info.path = source;
    return true;
}
}

CTranslationService::CTranslationService() { Reset(); }

void CTranslationService::Reset()
{
    name_ = kEnglishName;
    code_ = kEnglishCode;
    entries_.clear();
}

bool CTranslationService::ReadFailed(const HVString& path)
{
    Reset();
    HVLog::Write(HVLog::kWarning, "CTranslationService::Load", u"Can't read the language file %s", path);
    return false;
}

bool CTranslationService::LoadText(const HVString& xml, const HVString& source)
{
    HVXMLDocument doc;
    doc.SetDoc(xml);
    return LoadDocument(doc, source);
}

bool CTranslationService::LoadDocument(HVXMLDocument& doc, const HVString& source)
{
    Reset();
    HVXMLDocument::Elem root = 0;
    CLanguageInfo info;
    if (!ReadRoot(doc, source, root, info))
        return false;

    std::unordered_map<HVString, HVString> entries;
    int skipped = 0;
    for (HVXMLDocument::Elem e = doc.GetFirstChild(root); e != 0; e = doc.GetNextSibling(e)) {
        if (doc.GetElemTagName(e) != u"Text")
            continue;
        const HVXMLDocument::Elem englishElem = doc.Select(u"English", e);
        const HVXMLDocument::Elem translationElem = doc.Select(u"Translation", e);
        if (englishElem == 0 || translationElem == 0) {
            ++skipped;
            continue;
        }
        HVString english = Unescape(doc.GetElemData(englishElem).view());
        HVString translation = Unescape(doc.GetElemData(translationElem).view());
        if (english.IsEmpty() || translation.IsEmpty()) {
            ++skipped;   // an entry not translated yet: English shows
            continue;
        }
        if (FormatMarkers(english.view()) != FormatMarkers(translation.view())) {
            HVLog::Write(HVLog::kWarning, "CTranslationService::Load",
                         u"%s: the translation of \"%s\" has other %% markers; it is left out", source, english);
            ++skipped;
            continue;
        }
        if (!entries.emplace(std::move(english), std::move(translation)).second)
            ++skipped;   // the first entry for a text wins
    }

    name_ = info.name;
    code_ = info.code;
    entries_ = std::move(entries);
    HVLog::Write(HVLog::kInfo, "CTranslationService::Load", u"Language %s (%s) from %s: %d texts, %d left out", name_,
                 code_, source, entries_.size(), skipped);
    return true;
}

HVString CTranslationService::Lookup(const HVString& english) const
{
    auto it = entries_.find(english);
    return it == entries_.end() ? HVString() : it->second;
}

HVString CTranslationService::Translate(const HVString& english) const
{
    if (entries_.empty() || english.IsEmpty())
        return english;
    auto it = entries_.find(english);
    if (it != entries_.end())
        return it->second;

    // A joined message: translate its parts one by one. Each part ends after its line
    // breaks, as the parts are written in the program and in the file; a part that only
    // differs by its breaks is found without them too.
    const std::u16string_view text = english.view();
    if (text.find_first_of(u"\r\n") == std::u16string_view::npos)
        return english;
    HVString result;
    bool any = false;
    for (size_t start = 0; start < text.size();) {
        const size_t end = PartEnd(text, start);
        const HVString part(text.substr(start, end - start));
        HVString translated = Lookup(part);
        if (translated.IsEmpty()) {
            size_t bare = part.GetLength();
            while (bare > 0 && IsLineBreak(part[static_cast<int32_t>(bare) - 1]))
                --bare;
            translated = bare < static_cast<size_t>(part.GetLength()) ? Lookup(part.Left(static_cast<int32_t>(bare)))
                                                                        : HVString();
            if (!translated.IsEmpty())
                translated += part.Mid(static_cast<int32_t>(bare));
        }
        if (translated.IsEmpty()) {
            result += part;
        } else {
            result += translated;
            any = true;
        }
        start = end;
    }
    return any ? result : english;
}

HVString CTranslationService::Unescape(std::u16string_view text)
{
    HVString result;
    result.Preallocate(static_cast<int32_t>(text.size()));
    size_t i = 0;
    const size_t n = text.size();
    while (i < n) {
        const char16_t ch = text[i];
        if (IsLineBreak(ch)) {
            // A wrapped line: drop the blanks before it, the breaks, and the indentation
            // after it; one space stands for all of it unless it is at either end.
            int32_t length = result.GetLength();
            while (length > 0 && IsSpaceOrTab(result[length - 1]))
                --length;
            result.Truncate(length);
            while (i < n && (IsLineBreak(text[i]) || IsSpaceOrTab(text[i])))
                ++i;
            if (length > 0 && i < n)
                result += u' ';
            continue;
        }
        if (ch == u'\\' && i + 1 < n) {
            const char16_t next = text[i + 1];
            const char16_t mapped = next == u'r' ? u'\r' : next == u'n' ? u'\n' : next == u't' ? u'\t' : next == u'\\' ? u'\\' : 0;
            if (mapped) {
                result += mapped;
                i += 2;
                continue;
            }
        }
        result += ch;
        ++i;
    }
    return result;
}

std::vector<HVString> CTranslationService::FormatMarkers(std::u16string_view text)
{
    std::vector<HVString> markers;
    for (size_t i = 0; i < text.size(); ++i) {
        if (text[i] != u'%')
            continue;
        if (i + 1 < text.size() && text[i + 1] == u'%') {
            ++i;
            continue;
        }
        // Flags, width, precision and length modifiers up to the conversion letter.
        size_t j = i + 1;
        while (j < text.size() && std::u16string_view(u"-+ 0#*.123456789hlLIjztw").find(text[j]) != std::u16string_view::npos)
            ++j;
        if (j < text.size())
            ++j;
        markers.emplace_back(text.substr(i, j - i));
        i = j - 1;
    }
    return markers;
}

bool CTranslationService::ReadLanguageInfo(const HVString& xml, const HVString& path, CLanguageInfo& info)
{
    HVXMLDocument doc;
    doc.SetDoc(xml);
    HVXMLDocument::Elem root = 0;
    return ReadRoot(doc, path, root, info);
}

std::vector<CLanguageInfo> CTranslationService::ListLanguages(const HVString& folder, const FileLister& lister,
                                                              const FileReader& reader)
{
    std::vector<CLanguageInfo> languages;
    languages.push_back({kEnglishName, kEnglishCode, HVString()});

    std::vector<HVString> names;
    if (!lister || !lister(folder, names))
        return languages;

    HVString prefix = folder;
    if (!prefix.IsEmpty() && !prefix.EndsWith(u"\\") && !prefix.EndsWith(u"/"))
        prefix += u'\\';

    std::vector<CLanguageInfo> found;
    for (const HVString& name : names) {
        if (!name.EndsWithNoCase(u".xml") || name.GetLength() <= 4)
            continue;
        const HVString path = prefix + name;
        HVString text;
        CLanguageInfo info;
        if (reader && reader(path, text) && ReadLanguageInfo(text, path, info))
            found.push_back(std::move(info));
    }
    std::sort(found.begin(), found.end(), [](const CLanguageInfo& a, const CLanguageInfo& b) {
        const int byName = a.name.CompareNoCase(b.name);
        return byName != 0 ? byName < 0 : a.path.CompareNoCase(b.path) < 0;
    });
    for (CLanguageInfo& info : found) {
        const bool listed = std::any_of(languages.begin(), languages.end(),
                                        [&](const CLanguageInfo& l) { return l.name.EqualsNoCase(info.name); });
        if (listed) {
            HVLog::Write(HVLog::kWarning, "CTranslationService::ListLanguages",
                         u"%s names the language %s a second time; it is left out", info.path, info.name);
            continue;
        }
        languages.push_back(std::move(info));
    }
    return languages;
}

bool CTranslationService::Load(const HVString& path)
{
    HVString text;
    if (!HVTextFileReader::Read(path, text))
        return ReadFailed(path);
    return LoadText(text, path);
}

CTranslationService::FileReader CTranslationService::TextFileReader()
{
    return [](const HVString& path, HVString& text) { return HVTextFileReader::Read(path, text); };
}
