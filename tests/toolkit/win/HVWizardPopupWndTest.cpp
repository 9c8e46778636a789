#include "toolkit/win/HVButton.h"
#include "toolkit/win/HVDpi.h"

#include "ScriptedWizard.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
using W = HVWizardPopupWnd;
constexpr auto Key = ScriptedWizard::Key;

TEST(HVWizardPopupWndTest, NextAsksEnterTestsAndBackReturnsToThePageShownBefore)
{
    ScriptedWizard w(4);
    w.pages[1]->enter = false;      // B is passed over
    w.pages[3]->refuseNext = 1;     // D keeps the user once
    std::vector<std::wstring> titles;
    std::vector<bool> backEnabled;
    std::vector<std::wstring> nextCaptions;
    auto look = [&] {
        titles.push_back(w.HeaderTitle());
        backEnabled.push_back(::IsWindowEnabled(::GetDlgItem(w.Hwnd(), W::kBackId)) != FALSE);
        nextCaptions.push_back(WindowText(::GetDlgItem(w.Hwnd(), W::kNextId)));
    };
    const ScriptedWizard::Step next = w.Press(W::kNextId);
    const int result = w.RunScript({look, next, look, w.Press(W::kBackId), look, next, next, look, next, look, next});
    EXPECT_EQ(result, W::kFinished);
    EXPECT_EQ(titles, (std::vector<std::wstring>{L"A", L"C", L"A", L"D", L"D"}));
    EXPECT_EQ(backEnabled, (std::vector<bool>{false, true, false, true, true}));
    EXPECT_EQ(nextCaptions, (std::vector<std::wstring>{L"&Next >", L"&Next >", L"&Next >", L"&Finish", L"&Finish"}));
}

TEST(HVWizardPopupWndTest, KeyboardEnterPressesNextEscCancelsAltReachesBack)
{
    ScriptedWizard w(3);
    w.allowCancel = false;
    std::vector<std::wstring> titles;
    auto look = [&] { titles.push_back(w.HeaderTitle()); };
    // In the read-only agreement box Enter and Esc still act for the wizard.
    auto focusBox = [&] { ::SetFocus(w.pages[static_cast<size_t>(w.CurrentIndex())]->box_.Hwnd()); };
    const int result = w.RunScript({Key(WM_KEYDOWN, VK_RETURN), look, Key(WM_SYSCHAR, 'b'), look, Key(WM_SYSCHAR, 'n'), look,
                                    Key(WM_KEYDOWN, VK_ESCAPE), focusBox, Key(WM_KEYDOWN, VK_ESCAPE), focusBox,
                                    Key(WM_KEYDOWN, VK_RETURN), look, [&] { w.allowCancel = true; },
                                    [&] { ::PostMessageW(w.Hwnd(), WM_CLOSE, 0, 0); }});
    EXPECT_EQ(result, W::kCancelled);
    EXPECT_EQ(titles, (std::vector<std::wstring>{L"B", L"A", L"B", L"C"}));
    EXPECT_EQ(w.cancelRequests, 3);  // Esc, Esc in the box, then the close box
}

TEST(HVWizardPopupWndTest, ArrowKeysMoveBetweenChoicesUnderABoldTitle)
{
    ScriptedWizard w(1);
    std::vector<std::pair<bool, bool>> checked;  // first, second
    auto look = [&] { checked.push_back({w.pages[0]->first_.IsChecked(), w.pages[0]->second_.IsChecked()}); };
    LOGFONTW title = {};
    auto readTitleFont = [&] {
        const LPARAM font = ::SendDlgItemMessageW(w.Hwnd(), W::kTitleId, WM_GETFONT, 0, 0);
        ::GetObjectW(reinterpret_cast<HFONT>(font), sizeof title, &title);
    };
    const int result = w.RunScript({readTitleFont, [&] { ::SetFocus(w.pages[0]->first_.Hwnd()); }, Key(WM_KEYDOWN, VK_DOWN),
                                    look, Key(WM_KEYDOWN, VK_DOWN), look, Key(WM_KEYDOWN, VK_UP), look,
                                    [&] { w.Close(W::kCancelled); }});
    EXPECT_EQ(result, W::kCancelled);
    EXPECT_EQ(checked, (std::vector<std::pair<bool, bool>>{{false, true}, {true, false}, {false, true}}));
    EXPECT_EQ(title.lfWeight, FW_BOLD);
}

// Every control inside its page, every text as high as its wrapped lines need, the buttons
// inside the window and apart: at 100%, 150% and 200%.
TEST(HVWizardPopupWndTest, NothingIsClippedAtAnyScale)
{
    ScriptedWizard w(2);
    std::vector<std::string> problems;
    auto check = [&](UINT dpi) {
        // As the system tells a window that moved to a monitor of another scale.
        RECT suggested = {};
        ::GetWindowRect(w.Hwnd(), &suggested);
        ::SendMessageW(w.Hwnd(), WM_DPICHANGED, MAKEWPARAM(dpi, dpi), reinterpret_cast<LPARAM>(&suggested));
        RECT client = {};
        ::GetClientRect(w.Hwnd(), &client);
        if (client.right < HVDpi::Scale(500, dpi) || client.bottom < HVDpi::Scale(300, dpi))
            problems.push_back("client smaller than the minimum at " + std::to_string(dpi));
        HWND page = w.pages[0]->Hwnd();
        RECT pageRect = {};
        ::GetClientRect(page, &pageRect);
        for (HWND child = ::GetWindow(page, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT)) {
            RECT r = {};
            ::GetWindowRect(child, &r);
            ::MapWindowPoints(nullptr, page, reinterpret_cast<POINT*>(&r), 2);
            if (r.left < 0 || r.top < 0 || r.right > pageRect.right || r.bottom > pageRect.bottom)
                problems.push_back("control outside its page at " + std::to_string(dpi));
            wchar_t cls[32] = {};
            ::GetClassNameW(child, cls, 32);
            if (std::wstring(cls) == L"Static") {
                HDC dc = ::GetDC(child);
                HGDIOBJ old = ::SelectObject(dc, reinterpret_cast<HGDIOBJ>(::SendMessageW(child, WM_GETFONT, 0, 0)));
                RECT need = {0, 0, r.right - r.left, 0};
                const std::wstring text = WindowText(child);
                ::DrawTextW(dc, text.c_str(), -1, &need, DT_CALCRECT | DT_WORDBREAK | DT_NOPREFIX);
                ::SelectObject(dc, old);
                ::ReleaseDC(child, dc);
                if (need.bottom > r.bottom - r.top)
                    problems.push_back("text clipped at " + std::to_string(dpi));
            }
        }
        RECT previous = {};
        for (int id : {W::kBackId, W::kNextId, W::kCancelId}) {
            RECT r = {};
            ::GetWindowRect(::GetDlgItem(w.Hwnd(), id), &r);
            ::MapWindowPoints(nullptr, w.Hwnd(), reinterpret_cast<POINT*>(&r), 2);
            if (r.right > client.right || r.bottom > client.bottom || r.left < previous.right)
                problems.push_back("button misplaced at " + std::to_string(dpi));
            previous = r;
        }
    };
    const int result = w.RunScript({[&] { check(96); }, [&] { check(144); }, [&] { check(192); }, [&] { w.Close(W::kCancelled); }});
    EXPECT_EQ(result, W::kCancelled);
    EXPECT_TRUE(problems.empty()) << problems.front();
}

TEST(HVButtonTest, AcceleratorGoesBeforeTheLetterOrTheFirstLetterOfATranslation)
{
    struct Row { const char16_t* text; char16_t letter; const char16_t* expected; } rows[] = {
        {u"< Back", u'B', u"< &Back"}, {u"Next >", u'N', u"&Next >"}, {u"Accept", u'A', u"&Accept"},
        {u"< Zur\u00fcck", u'B', u"< &Zur\u00fcck"},  // no B: the first letter
        {u"&Weiter >", u'N', u"&Weiter >"},           // already marked
        {u"<>", u'B', u"<>"}, {u"", u'B', u""},
    };
    for (const Row& row : rows)
        EXPECT_EQ(HVButton::WithAccelerator(row.text, row.letter), row.expected);
}
}   // namespace
