#pragma once

// A value of the package manager's manifest (YAML as the release writes it: one key a line):
// the text after the first "<key>: " up to the end of its line, empty when no line has it. A
// key may carry its indentation ("  Silent") or list marker ("- RelativeFilePath") to pick
// the line it means. Header-only: the manifest's unit test and the release test share it.

#include <string>

inline std::string ManifestValue(const std::string& manifest, const std::string& key)
{
    const size_t at = manifest.find(key + ": ");
    if (at == std::string::npos)
        return {};
    const size_t start = at + key.size() + 2;
    return manifest.substr(start, manifest.find_first_of("\r\n", start) - start);
}
