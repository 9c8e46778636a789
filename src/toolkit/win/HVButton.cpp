#include "toolkit/win/HVButton.h"

bool HVButton::Create(HVLayoutWnd& parent, const HVString& text, const HVPlacement& place, bool isDefault, int id)
{
    return CreateControl(parent, L"BUTTON", text, WS_TABSTOP | (isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON), 0, place, id);
}

void HVButton::SetDefault(bool isDefault)
{
    if (hwnd_)
        ::SendMessageW(hwnd_, BM_SETSTYLE, isDefault ? BS_DEFPUSHBUTTON : BS_PUSHBUTTON, TRUE);
}

void HVButton::Click()
{
    if (hwnd_ && IsEnabled())
        ::SendMessageW(hwnd_, BM_CLICK, 0, 0);
}

HVString HVButton::WithAccelerator(const HVString& text, char16_t letter)
{
    if (text.Find(u'&') >= 0)
        return text;
    int32_t at = -1;
    for (int32_t i = 0; i < text.GetLength() && at < 0; ++i)
        if (HVString::ToLower(text[i]) == HVString::ToLower(letter))
            at = i;
    for (int32_t i = 0; i < text.GetLength() && at < 0; ++i)
        if (::IsCharAlphaNumericW(static_cast<wchar_t>(text[i])))
            at = i;
    if (at < 0)
        return text;
    HVString result = text;
    result.Insert(at, u"&");
    return result;
}
