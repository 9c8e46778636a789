#pragma once

#include "toolkit/win/HVButton.h"
#include "toolkit/win/HVEditCtrl.h"

// A folder entry: an edit with a "Browse..." button on its right that opens the system's
// folder picker (IFileOpenDialog) at the folder typed so far. Takes one row of the flow.
class HVFilenameEdit
{
public:
    bool Create(HVLayoutWnd& parent, const HVString& text, const HVString& browseText, const HVPlacement& place);

    HVString GetText() const { return edit_.GetText(); }
    void SetText(const HVString& text) { edit_.SetText(text); }
    void Enable(bool enable);
    HVEditCtrl& Edit() { return edit_; }
    HVButton& BrowseButton() { return browse_; }

    // Shows the folder picker; true with the chosen folder (ending in a backslash).
    static bool PickFolder(HWND owner, const HVString& start, const HVString& title, HVString& chosen);

    // Title of the picker.
    HVString pickerTitle;

private:
    void Browse();

    HVEditCtrl edit_;
    HVButton browse_;
};
