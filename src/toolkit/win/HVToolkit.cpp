#include "toolkit/win/HVToolkit.h"

#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/HVXMLDocument.h"
#include "foundation/win/HVFileSystem.h"
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

bool HVToolkit::ApplySkin(const HVString& skinFile)
{
    HVXMLDocument skin;
    HVString icon;
    if (skin.Load(skinFile)) {
        const HVXMLDocument::Elem resource = skin.Select(u"/*/Resource[@name='Titlebar Icon']");
        const HVString file = resource ? skin.GetElemAttrib(resource, u"file") : HVString();
        const HVString path = HVFileSystemPath::GetFolder(skinFile) + file;
        if (!file.IsEmpty() && HVFileSystem::Exists(path, false))
            icon = path;
    }
    if (icon.IsEmpty()) {
        HVLog::Write(HVLog::kInfo, "HVToolkit::ApplySkin", u"No title-bar icon in the skin %s: the program's own is used", skinFile);
        HVPopupWnd::SetTitlebarIconFile(HVString());
        return false;
    }
    HVLog::Write(HVLog::kInfo, "HVToolkit::ApplySkin", u"Title-bar icon %s", icon);
    HVPopupWnd::SetTitlebarIconFile(icon);
    return true;
}
