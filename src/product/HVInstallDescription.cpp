#include "product/HVInstallDescription.h"

#include "foundation/HVLog.h"
#include "foundation/HVTextFileReader.h"

namespace
{
bool IsXmlSpace(char16_t c) { return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n'; }
}   // namespace

bool HVInstallDescription::SetText(const HVString& text)
{
    path_.Empty();
    doc_.SetDoc(text);
    Parsed(HVString());
    return doc_.IsWellFormed();
}

void HVInstallDescription::Parsed(const HVString& path)
{
    loaded_ = true;
    if (!doc_.IsWellFormed())
        HVLog::Write(HVLog::kWarning, "HVInstallDescription::Load", u"Install description %s is not well formed: %s",
                     path, doc_.GetError());
}

HVInstallDescription::Elem HVInstallDescription::FindElement(std::u16string_view path) const
{
    return doc_.Select(path);
}

bool HVInstallDescription::GetValue(std::u16string_view path, HVString& value) const
{
    const Elem e = FindElement(path);
    if (e == 0) {
        value.Empty();
        return false;
    }
    value = doc_.GetElemData(e);
    return true;
}

HVString HVInstallDescription::GetText(std::u16string_view path, const HVString& fallback) const
{
    HVString value;
    if (!GetValue(path, value) || value.IsEmpty())
        return fallback;
    return value;
}

int32_t HVInstallDescription::GetInteger(std::u16string_view path, int32_t fallback) const
{
    HVString text;
    int32_t value = 0;
    if (!GetValue(path, text) || !ParseInteger(text.view(), value))
        return fallback;
    return value;
}

HVString HVInstallDescription::GetAttribute(Elem element, std::u16string_view name) const
{
    return doc_.GetElemAttrib(element, name);
}

bool HVInstallDescription::ParseInteger(std::u16string_view text, int32_t& value)
{
    size_t i = 0;
    size_t end = text.size();
    while (i < end && IsXmlSpace(text[i]))
        ++i;
    while (end > i && IsXmlSpace(text[end - 1]))
        --end;
    bool negative = false;
    if (i < end && (text[i] == u'-' || text[i] == u'+')) {
        negative = text[i] == u'-';
        ++i;
    }
    if (i == end)
        return false;
    int64_t v = 0;
    for (; i < end; ++i) {
        if (text[i] < u'0' || text[i] > u'9')
            return false;
        v = v * 10 + (text[i] - u'0');
        if (v > int64_t{INT32_MAX} + 1)
            return false;
    }
    v = negative ? -v : v;
    if (v > INT32_MAX || v < INT32_MIN)
        return false;
    value = static_cast<int32_t>(v);
    return true;
}

bool HVInstallDescription::Load(const HVString& path)
{
    HVString text;
    loaded_ = false;
    path_ = path;
    if (!HVTextFileReader::Read(path, text)) {
        doc_.SetDoc(HVString());
        return false;
    }
    doc_.SetDoc(text);
    Parsed(path);
    return true;
}

HVString HVInstallDescription::GetDownloadServer() const
{
    return GetText(u"/*/Installer/DownloadServer", kDefaultDownloadServer);
}

HVString HVInstallDescription::GetDownloadSha256(const HVString& fileName) const
{
    // A name with a slash would select another element than the file's own.
    if (fileName.IsEmpty() || fileName.Find(u'/') >= 0)
        return HVString();
    HVString path = u"/*/Installer/Downloads/";
    path += fileName;
    path += u"/SHA256";
    HVString digest = GetText(path.view());
    return digest.Trim();
}
