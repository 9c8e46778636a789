#pragma once

#include "foundation/HVPropertyMap.h"
#include "foundation/HVString.h"

#include <string_view>

// A file name that may carry named values (for a download: the request type, data to post,
// the file type). Without values it is written as the bare path, unchanged; with values as
// the XMLFN text, one string:
//   <XMLFN version="1.0"><Item Name="Filename">path</Item><Item Name="n">v</Item>...</XMLFN>
// with the path, names and values XML-escaped. Reading takes either form; a text that starts
// like XMLFN but doesn't parse as one is a bare path.
class HVFilenameWithProperties
{
public:
    // Property names the library attaches.
    static constexpr std::u16string_view kPostExtensionData = u"PostExtensionData";
    static constexpr std::u16string_view kFileType = u"FileType";
    static constexpr std::u16string_view kHttpRequestType = u"HTTPREQUEST_TYPE";

    HVFilenameWithProperties() = default;
    explicit HVFilenameWithProperties(const HVString& path) : path_(path) {}
    HVFilenameWithProperties(const HVString& path, const HVPropertyMap& properties)
        : path_(path), properties_(properties)
    {
    }

    const HVString& GetPath() const { return path_; }
    void SetPath(const HVString& path) { path_ = path; }
    const HVPropertyMap& GetProperties() const { return properties_; }
    HVPropertyMap& GetProperties() { return properties_; }

    HVString ToString() const { return Write(path_, &properties_); }
    static HVString Write(const HVString& path, const HVPropertyMap* properties);
    static HVFilenameWithProperties Read(const HVString& text);
    // Whether the text starts with the XMLFN element (the test for which form it is).
    static bool IsXMLFN(std::u16string_view text);

private:
    HVString path_;
    HVPropertyMap properties_;
};
