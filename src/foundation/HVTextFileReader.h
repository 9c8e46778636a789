#pragma once

#include "foundation/HVString.h"

// Reads a whole text file into a wide string, decoded by HVTextDecoder: a byte-order mark
// decides, otherwise UTF-8, with the system code page (Windows) or Latin-1 (elsewhere) for
// bytes that are not UTF-8.
//
// The file access is the platform's: std::fopen here, CreateFileW with the long-path form and
// MultiByteToWideChar(CP_ACP) on Windows (foundation/win/HVTextFileReader.cpp).
class HVTextFileReader
{
public:
    // False (and a log line) when the file can't be opened or read, or is too large for a
    // string; `text` is then left empty.
    static bool Read(const HVString& path, HVString& text);
};
