#include "changes/CInstallRecord.h"

#include "foundation/HVDigitValue.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <optional>

// A line: kind, flags, path, name, before, after, check; separated by tabs, ended by CR LF
// (records of the first format have no "after"). The check
// is the CRC-32 (eight hex digits) of the UTF-8 bytes before it, its tab included. Fields are
// escaped with '%' and two hex digits for '%', tab, CR, LF and other control characters, so
// that Windows paths keep their backslashes as they are and stay readable in the file.
// The header line starts every run that wrote to the record: a reinstall appends a header and
// its own changes, and a run killed half way may end in a torn line just before the next one.
// After the magic and the version, the header lists the user folders of the run's shortcuts.
namespace
{
constexpr std::string_view kMagic = "HVInstallRecord";
constexpr int kVersion = 2;
// Still read: written before the records kept what the install wrote.
constexpr int kFirstVersion = 1;

constexpr std::array<InstallChange::Kind, 14> kKinds = {
    InstallChange::Kind::FileWritten,      InstallChange::Kind::FileDeleted,   InstallChange::Kind::FolderCreated,
    InstallChange::Kind::FolderDeleted,    InstallChange::Kind::KeyCreated,    InstallChange::Kind::KeyDeleted,
    InstallChange::Kind::ValueWritten,     InstallChange::Kind::ValueDeleted,  InstallChange::Kind::ShortcutCreated,
    InstallChange::Kind::FileStarted,      InstallChange::Kind::FontAdded,     InstallChange::Kind::ModuleRegistered,
    InstallChange::Kind::SharedFileCounted, InstallChange::Kind::InstallEnded,
};

uint32_t Crc(std::string_view bytes)
{
    const auto* data = reinterpret_cast<const Bytef*>(bytes.data());
    return static_cast<uint32_t>(crc32_z(crc32_z(0, Z_NULL, 0), data, bytes.size()));
}

std::string Hex8(uint32_t value)
{
    char text[9];
    std::snprintf(text, sizeof text, "%08X", static_cast<unsigned>(value));
    return text;
}

void AppendEscaped(std::string& line, const HVString& field)
{
    for (char ch : field.ToUtf8()) {
        const auto byte = static_cast<unsigned char>(ch);
        if (byte < 0x20 || byte == 0x7F || ch == '%') {
            char escape[4];
            std::snprintf(escape, sizeof escape, "%%%02X", byte);
            line += escape;
        } else {
            line += ch;
        }
    }
}

std::optional<HVString> Unescape(std::string_view field)
{
    std::string bytes;
    bytes.reserve(field.size());
    for (size_t i = 0; i < field.size(); ++i) {
        if (field[i] != '%') {
            bytes += field[i];
            continue;
        }
        if (i + 2 >= field.size())
            return std::nullopt;
        const int high = HVDigitValue(field[i + 1]);
        const int low = HVDigitValue(field[i + 2]);
        if (high < 0 || low < 0)
            return std::nullopt;
        bytes += static_cast<char>(high * 16 + low);
        i += 2;
    }
    return HVString::FromUtf8(bytes);
}

std::vector<std::string_view> SplitTabs(std::string_view line)
{
    std::vector<std::string_view> fields;
    size_t start = 0;
    for (;;) {
        const size_t tab = line.find('\t', start);
        fields.push_back(line.substr(start, tab == std::string_view::npos ? std::string_view::npos : tab - start));
        if (tab == std::string_view::npos)
            return fields;
        start = tab + 1;
    }
}

// The header's version, or nullopt when the line is no header at all.
std::optional<int> HeaderVersion(std::string_view line)
{
    const std::vector<std::string_view> fields = SplitTabs(line);
    if (fields.size() < 2 || fields[0] != kMagic)
        return std::nullopt;
    int version = 0;
    for (char ch : fields[1]) {
        if (ch < '0' || ch > '9' || version > 100000)
            return 0;
        version = version * 10 + (ch - '0');
    }
    return version;
}

std::optional<InstallChange> DecodeLine(std::string_view line, int version)
{
    const size_t lastTab = line.rfind('\t');
    if (lastTab == std::string_view::npos || line.size() - lastTab - 1 != 8)
        return std::nullopt;
    if (Hex8(Crc(line.substr(0, lastTab + 1))) != line.substr(lastTab + 1))
        return std::nullopt;
    const std::vector<std::string_view> fields = SplitTabs(line.substr(0, lastTab));
    if (fields.size() != (version == kFirstVersion ? 5u : 6u))
        return std::nullopt;
    InstallChange change;
    const HVString kind = HVString::FromUtf8(fields[0]);
    const auto known = std::find_if(kKinds.begin(), kKinds.end(),
                                    [&](InstallChange::Kind k) { return kind == CInstallChangeLog::KindName(k); });
    if (known == kKinds.end())
        return std::nullopt;
    change.kind = *known;
    if (fields[1] != "-") {
        for (char flag : fields[1]) {
            if (flag == 'E')
                change.existedBefore = true;
            else if (flag == 'D')
                change.deferred = true;
            else
                return std::nullopt;
        }
    }
    std::optional<HVString> path = Unescape(fields[2]);
    std::optional<HVString> name = Unescape(fields[3]);
    std::optional<HVString> before = Unescape(fields[4]);
    std::optional<HVString> after = version == kFirstVersion ? HVString() : Unescape(fields[5]);
    if (!path || !name || !before || !after)
        return std::nullopt;
    change.path = *path;
    change.name = *name;
    change.before = *before;
    change.after = *after;
    change.afterKnown = version != kFirstVersion;
    return change;
}
}

std::string CInstallRecord::Header(const std::vector<HVString>& userFolders)
{
    std::string line = std::string(kMagic) + "\t" + std::to_string(kVersion);
    for (const HVString& folder : userFolders) {
        line += '\t';
        AppendEscaped(line, folder);
    }
    return line + "\r\n";
}

std::string CInstallRecord::EncodeLine(const InstallChange& change)
{
    std::string line = HVString(CInstallChangeLog::KindName(change.kind)).ToUtf8();
    line += '\t';
    if (change.existedBefore)
        line += 'E';
    if (change.deferred)
        line += 'D';
    if (!change.existedBefore && !change.deferred)
        line += '-';
    line += '\t';
    AppendEscaped(line, change.path);
    line += '\t';
    AppendEscaped(line, change.name);
    line += '\t';
    AppendEscaped(line, change.before);
    line += '\t';
    AppendEscaped(line, change.after);
    line += '\t';
    line += Hex8(Crc(line));
    line += "\r\n";
    return line;
}

CInstallRecord::Contents CInstallRecord::Parse(std::string_view text)
{
    Contents contents;
    std::vector<std::string_view> lines;
    std::vector<size_t> offsets;
    for (size_t start = 0; start < text.size();) {
        const size_t end = text.find('\n', start);
        offsets.push_back(start);
        if (end == std::string_view::npos) {
            // No line end: the write of this line may not have finished; its check tells.
            lines.push_back(text.substr(start));
            break;
        }
        std::string_view line = text.substr(start, end - start);
        if (!line.empty() && line.back() == '\r')
            line.remove_suffix(1);
        lines.push_back(line);
        start = end + 1;
        if (start == text.size())
            break;
    }
    if (lines.empty() || !HeaderVersion(lines[0])) {
        contents.problem = u"The install record has no header line.";
        return contents;
    }
    int runVersion = kVersion;
    for (size_t i = 0; i < lines.size(); ++i) {
        const bool last = i + 1 == lines.size();
        const bool lastOfRun = last || HeaderVersion(lines[i + 1]).has_value();
        if (const std::optional<int> version = HeaderVersion(lines[i])) {
            const std::vector<std::string_view> fields = SplitTabs(lines[i]);
            std::vector<HVString> folders;
            for (size_t f = 2; f < fields.size(); ++f)
                if (std::optional<HVString> folder = Unescape(fields[f]))
                    folders.push_back(*folder);
            if (*version != kVersion && *version != kFirstVersion) {
                contents.problem = HVString::Format(u"The install record has the unknown version %s.",
                                                    HVString::FromUtf8(fields[1]));
                return contents;
            }
            if (folders.size() + 2 != fields.size()) {
                contents.problem = HVString::Format(u"Line %d of the install record is damaged.", static_cast<int>(i + 1));
                return contents;
            }
            runVersion = *version;
            contents.runs.push_back({.offset = offsets[i], .firstChange = contents.changes.size()});
            for (const HVString& folder : folders)
                if (std::none_of(contents.userFolders.begin(), contents.userFolders.end(),
                                 [&](const HVString& known) { return known.EqualsNoCase(folder.view()); }))
                    contents.userFolders.push_back(folder);
            continue;
        }
        std::optional<InstallChange> change = DecodeLine(lines[i], runVersion);
        if (change) {
            contents.runs.back().ended |= change->kind == InstallChange::Kind::InstallEnded;
            contents.changes.push_back(*change);
            continue;
        }
        ++contents.damagedLines;
        if (!lastOfRun && contents.problem.IsEmpty())
            contents.problem = HVString::Format(u"Line %d of the install record is damaged.", static_cast<int>(i + 1));
    }
    return contents;
}
