#pragma once

// A file of the source tree, named from its root with "/" ("packaging/winget/..."): its path
// as the test program reaches it (the programs know the root as IW_SOURCE_DIR), and its text,
// empty (and the test failed) when it can't be read. Header-only, so the native core tests
// and the Windows test programs share it.

#include "foundation/HVTextFileReader.h"

#include <gtest/gtest.h>

#include <string>

inline HVString SourceFilePath(const std::string& relative)
{
    std::string path = std::string(IW_SOURCE_DIR) + "/" + relative;
#ifdef _WIN32
    for (char& ch : path)
        ch = ch == '/' ? '\\' : ch;
#endif
    return HVString::FromUtf8(path);
}

inline std::string SourceFileText(const std::string& relative)
{
    HVString text;
    EXPECT_TRUE(HVTextFileReader::Read(SourceFilePath(relative), text)) << relative;
    return text.ToUtf8();
}
