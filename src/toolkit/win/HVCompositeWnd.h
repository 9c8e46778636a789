#pragma once

#include "toolkit/win/HVWnd.h"

// A window of one of the toolkit's own classes: its messages come to OnMessage. Pages and
// pop-ups are composite windows that hold native controls.
class HVCompositeWnd : public HVWnd
{
public:
    ~HVCompositeWnd() override;

protected:
    // Registers `className` on first use (once per process) and makes the window.
    bool CreateComposite(const wchar_t* className, DWORD exStyle, DWORD style, const HVString& title, HWND parent,
                         const RECT& rect, int id = 0);

    // Everything not handled goes to DefaultMessage.
    virtual LRESULT OnMessage(UINT message, WPARAM wParam, LPARAM lParam);
    LRESULT DefaultMessage(UINT message, WPARAM wParam, LPARAM lParam);

private:
    static LRESULT CALLBACK WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
};
