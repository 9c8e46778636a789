// ListShortcuts.exe
//
// Lists the shortcuts the installer makes for the user running it: each ".lnk" of the Start
// Menu folder, the desktop and Quick Launch, with the program it starts, its arguments and
// its icon, as the shell reads them back. The demo shows with it what an install left.
#include "FolderTree.h"
#include "Shortcut.h"
#include "TestPaths.h"

#include <cstdio>
#include <string>
#include <vector>

int wmain()
{
    std::vector<std::wstring> links;
    for (const std::wstring& name : e2e::ListTree(e2e::StartMenuFolder()))
        links.push_back(e2e::StartMenuFolder() + name);
    links.push_back(e2e::DesktopLink());
    links.push_back(e2e::QuickLaunchLink());
    int found = 0;
    for (const std::wstring& link : links) {
        const auto target = e2e::ReadShortcut(link);
        if (!target)
            continue;
        ++found;
        std::printf("   %s\n      -> %s%s%s\n      icon %s\n", e2e::Utf8(link).c_str(), e2e::Utf8(target->path).c_str(),
                    target->arguments.empty() ? "" : " ", e2e::Utf8(target->arguments).c_str(),
                    e2e::Utf8(target->icon).c_str());
    }
    if (!found)
        std::printf("   (no shortcuts)\n");
    return 0;
}
