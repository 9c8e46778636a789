#include "toolkit/win/HVFilenameEdit.h"

#include "foundation/HVLog.h"
#include "foundation/win/HVComPtr.h"
#include "toolkit/win/HVTheme.h"

#include <shobjidl.h>

bool HVFilenameEdit::Create(HVLayoutWnd& parent, const HVString& text, const HVString& browseText,
                            const HVPlacement& place)
{
    const int buttonWidth = HVTheme::Current().Element(u"Frame::Button").widthDlu;
    HVPlacement editPlace = place;
    editPlace.cx = -(buttonWidth + 4);
    HVPlacement buttonPlace;
    buttonPlace.x = -buttonWidth;
    buttonPlace.cx = buttonWidth;
    buttonPlace.cy = HVTheme::Current().Element(u"Frame::Edit").heightDlu;
    buttonPlace.sameRow = true;
    if (!edit_.Create(parent, text, editPlace) || !browse_.Create(parent, browseText, buttonPlace))
        return false;
    browse_.onChange = [this] { Browse(); };
    return true;
}

void HVFilenameEdit::Enable(bool enable)
{
    edit_.Enable(enable);
    browse_.Enable(enable);
}

void HVFilenameEdit::Browse()
{
    HVString chosen;
    if (PickFolder(::GetAncestor(edit_.Hwnd(), GA_ROOT), edit_.GetText(), pickerTitle, chosen)) {
        edit_.SetText(chosen);
        edit_.Focus();
    }
}

bool HVFilenameEdit::PickFolder(HWND owner, const HVString& start, const HVString& title, HVString& chosen)
{
    HVComPtr<IFileOpenDialog> dialog;
    HRESULT hr = ::CoCreateInstance(CLSID_FileOpenDialog, nullptr, CLSCTX_INPROC_SERVER, IID_IFileOpenDialog,
                                    dialog.ReceiveVoid());
    if (FAILED(hr)) {
        HVLog::Write(HVLog::kError, "HVFilenameEdit::PickFolder", u"No folder dialog (0x%08x)", static_cast<uint32_t>(hr));
        return false;
    }
    DWORD options = 0;
    dialog->GetOptions(&options);
    dialog->SetOptions(options | FOS_PICKFOLDERS | FOS_FORCEFILESYSTEM | FOS_PATHMUSTEXIST);
    if (!title.IsEmpty())
        dialog->SetTitle(title.w());

    // Start at the nearest existing folder of what was typed.
    HVString folder = start;
    while (!folder.IsEmpty()) {
        const DWORD attributes = ::GetFileAttributesW(folder.w());
        if (attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY))
            break;
        folder.TrimRight(u"\\");
        const int32_t slash = folder.ReverseFind(u'\\');
        folder = slash > 0 ? folder.Left(slash) : HVString();
    }
    if (!folder.IsEmpty()) {
        HVComPtr<IShellItem> item;
        if (SUCCEEDED(::SHCreateItemFromParsingName(folder.w(), nullptr, IID_IShellItem, item.ReceiveVoid())))
            dialog->SetFolder(item.Get());
    }

    if (dialog->Show(owner) != S_OK)
        return false;
    HVComPtr<IShellItem> result;
    if (FAILED(dialog->GetResult(result.Receive())))
        return false;
    PWSTR path = nullptr;
    if (FAILED(result->GetDisplayName(SIGDN_FILESYSPATH, &path)) || !path)
        return false;
    chosen = HVString(path);
    ::CoTaskMemFree(path);
    if (!chosen.EndsWith(u"\\"))
        chosen += u'\\';
    return true;
}
