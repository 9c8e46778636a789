#pragma once

#include "foundation/CVersionInfo.h"
#include "foundation/HVString.h"

#include <cstdint>

// Copy modes, passed with every copy. Mode 2 is a bit flag: the font step runs whenever the
// bit is set.
enum CopyMode : int32_t
{
    kCopyVersionCheck = 0,    // "System\Check Version\": modules only when newer
    kCopyAlwaysOverwrite = 1, // "System\Always Overwrite\", the program files
    kCopyFont = 2,            // "Fonts\": always, then added to the font table
};

// The decisions of the copy rules that need no file system: which names are version-checked,
// whether a file is copied, which names are special. All name comparisons ignore case.
class CCopyRules
{
public:
    // ".dll", ".exe", ".ocx" or ".ax" at the end of the path.
    static bool IsVersionChecked(const HVString& path);
    // Mode 0 copies a version-checked file only when the destination is older (a missing file
    // or one without version information is 0.0.0.0); every other case copies.
    static bool ShouldCopy(int32_t mode, const HVString& destinationPath, const CVersionInfo& source,
                           const CVersionInfo& destination);
    static bool IsFontMode(int32_t mode) { return (mode & kCopyFont) != 0; }
    // The destination lies inside "Windows\Fonts": a deferred font needs no restart.
    static bool IsInFontsFolder(const HVString& path);
    // The font's value name under the system font table: the file's title, marked
    // " (TrueType)" for ".ttf" and ".ttc" and " (OpenType)" for ".otf".
    static HVString FontTableName(const HVString& path);
    // "DynamoServer.exe" at the end of the path: the server is stopped before its file is copied.
    static bool IsServerProgram(const HVString& path);
    // "HVShellExt.dll" as the file name: the product's shell extension.
    static bool IsShellExtension(const HVString& path);
    // ".dll" or ".ocx": the only files whose DllRegisterServer is called.
    static bool MayRegister(const HVString& path);
    // The file name begins with "in_": an input plug-in.
    static bool IsInputPlugin(const HVString& path);
    // The path contains "Dynamo" anywhere: the server edition's own files.
    static bool MentionsServer(const HVString& path);
};
