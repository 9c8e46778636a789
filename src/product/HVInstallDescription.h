#pragma once

#include "foundation/HVLog.h"
#include "foundation/HVString.h"
#include "foundation/HVXMLDocument.h"

#include <cstdint>
#include <string_view>

// The install description (Install.xml), parsed once and held for the whole run. Values are
// read by absolute path, "/*/Product/InstallToPath" and the like; "*" matches the root
// whatever its name. The object applies no defaults or bounds of its own: each reader passes
// its default and clamps what it gets, so the key table lives with the code that uses a key.
class HVInstallDescription
{
public:
    using Elem = HVXMLDocument::Elem;

    // Reads and parses the file. True when the file could be read, even if it is not well
    // formed (what could be indexed is used, and the problems are logged).
    bool Load(const HVString& path);
    // Takes the text directly. Returns whether it is well formed.
    bool SetText(const HVString& text);
    bool IsLoaded() const { return loaded_; }
    const HVString& GetPath() const { return path_; }

    // The text of the selected element, or `fallback` when the element is missing or empty.
    HVString GetText(std::u16string_view path, const HVString& fallback = HVString()) const;
    // The text of the selected element, empty or not; false when there is no such element.
    bool GetValue(std::u16string_view path, HVString& value) const;
    // The element's text as a decimal integer, or `fallback` when missing, empty or not a
    // number that fits.
    int32_t GetInteger(std::u16string_view path, int32_t fallback) const;
    // The base address that dependencies are downloaded from, "/*/Installer/DownloadServer";
    // the maker's https server when the description names none.
    static constexpr const char16_t* kDefaultDownloadServer = u"https://downloads.halvard.com/sonora/dependencies/";
    HVString GetDownloadServer() const;
    // The SHA-256 a download must have, "/*/Installer/Downloads/<file name>/SHA256"; empty when
    // the description pins none.
    HVString GetDownloadSha256(const HVString& fileName) const;
    // The selected element (for keys whose value is a list of child elements), or 0.
    Elem FindElement(std::u16string_view path) const;
    // An attribute of an element found above; empty when absent.
    HVString GetAttribute(Elem element, std::u16string_view name) const;

    const HVXMLDocument& GetDocument() const { return doc_; }
    HVXMLDocument& GetDocument() { return doc_; }

    // Decimal integer with optional blanks around and an optional sign; false for anything
    // else, or a value outside 32 bits.
    static bool ParseInteger(std::u16string_view text, int32_t& value);

private:
    void Parsed(const HVString& path);

    HVXMLDocument doc_;
    HVString path_;
    bool loaded_ = false;
};
