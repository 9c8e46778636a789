#pragma once

#include <optional>
#include <string>

namespace e2e
{
// Where the shortcut users see points, read back through the shell's link object: its target,
// arguments and icon file.
struct ShortcutTarget
{
    std::wstring path;
    std::wstring arguments;
    std::wstring icon;
};
// nullopt when the file is missing or no link.
std::optional<ShortcutTarget> ReadShortcut(const std::wstring& link);

// The places the installer puts shortcuts for the user running the tests.
std::wstring StartMenuFolder();   // "...\Start Menu\Programs\Sonora\"
std::wstring DesktopLink();       // "...\Desktop\Sonora.lnk"
std::wstring QuickLaunchLink();
}
