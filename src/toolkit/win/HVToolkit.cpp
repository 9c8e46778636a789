#include "toolkit/win/HVToolkit.h"

#include "foundation/HVLog.h"
#include "toolkit/win/HVPopupWnd.h"
#include "toolkit/win/HVTheme.h"

#include <windows.h>
#include <commctrl.h>

bool HVToolkit::Initialize()
{
    INITCOMMONCONTROLSEX controls = {};
    controls.dwSize = sizeof controls;
    controls.dwICC = ICC_STANDARD_CLASSES | ICC_PROGRESS_CLASS | ICC_WIN95_CLASSES;
    const bool ok = ::InitCommonControlsEx(&controls) != FALSE;
    if (!ok)
        HVLog::Write(HVLog::kError, "HVToolkit::Initialize", u"InitCommonControlsEx failed");
    HVTheme::Current().Reset();
    return ok;
}

bool HVToolkit::ApplySkin(const HVString& skinFolder)
{
    HVString folder = skinFolder;
    if (!folder.IsEmpty() && !folder.EndsWith(u"\\"))
        folder += u'\\';
    HVString icon;
    for (const char16_t* name : {u"Titlebar Icon.ico", u"Titlebar Icon.png"}) {
        const DWORD attributes = ::GetFileAttributesW((folder + name).w());
        if (icon.IsEmpty() && !folder.IsEmpty() && attributes != INVALID_FILE_ATTRIBUTES &&
            !(attributes & FILE_ATTRIBUTE_DIRECTORY))
            icon = folder + name;
    }
    if (icon.IsEmpty()) {
        HVLog::Write(HVLog::kInfo, "HVToolkit::ApplySkin", u"No title-bar icon in %s: the program's own is used", folder);
        HVPopupWnd::SetTitlebarIconFile(HVString());
        return false;
    }
    HVLog::Write(HVLog::kInfo, "HVToolkit::ApplySkin", u"Title-bar icon %s", icon);
    HVPopupWnd::SetTitlebarIconFile(icon);
    return true;
}
