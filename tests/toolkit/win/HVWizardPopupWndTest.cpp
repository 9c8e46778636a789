#include "toolkit/win/HVButton.h"
#include "toolkit/win/HVCheckBox.h"
#include "toolkit/win/HVDpi.h"
#include "toolkit/win/HVEditCtrl.h"
#include "toolkit/win/HVRadioButton.h"
#include "toolkit/win/HVStaticText.h"
#include "toolkit/win/HVTextBox.h"
#include "toolkit/win/HVWizardPopupWnd.h"

#include "OwnDialog.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace
{
// A page with every kind of control the install pages use, long texts included, and
// switches for its enter test and Next.
class TestPage : public HVWizardPageWnd
{
public:
    explicit TestPage(std::wstring name) : name_(std::move(name)) {}

    bool enter = true;
    int refuseNext = 0;  // Next presses to refuse before accepting

    bool CreateControls() override
    {
        HVPlacement prompt;
        HVPlacement choice{.x = 7, .gap = 8};
        HVPlacement text{.x = 19, .gap = 1};
        HVPlacement edit{.gap = 6};
        HVPlacement box{.gap = 4, .cy = HVPlacement::kFillHeight};
        return prompt_.Create(*this, u"Please select a setup type.", prompt) &&
               first_.Create(*this, u"Express", choice, true) &&
               firstText_.Create(*this,
                                 u"This lets you put a complete copy of the program on a removable drive, so you can "
                                 u"take it to another compatible computer and run it.  This will also ask for a drive "
                                 u"and path.",
                                 text) &&
               second_.Create(*this, u"Custom", choice, false) && edit_.Create(*this, u"C:\\Program Files\\", edit) &&
               check_.Create(*this, u"Next time use Auto Install after 30 second timeout.", edit) &&
               box_.Create(*this, u"Line one\r\nLine two", box);
    }
    bool EnterTest() override { return enter; }
    bool NextPressed() override { return refuseNext-- <= 0; }
    HVString Title() const override { return HVString(name_.c_str()); }
    HVString Subtitle() const override { return u"Choose the setup type that best suits your needs."; }

    std::wstring name_;
    HVStaticText prompt_;
    HVRadioButton first_;
    HVStaticText firstText_;
    HVRadioButton second_;
    HVEditCtrl edit_;
    HVCheckBox check_;
    HVTextBox box_;
};

// A wizard of pages titled A, B, C, ...
class TestWizard : public HVWizardPopupWnd
{
public:
    explicit TestWizard(int count)
    {
        for (int i = 0; i < count; ++i) {
            auto page = std::make_unique<TestPage>(std::wstring(1, static_cast<wchar_t>(L'A' + i)));
            pages.push_back(page.get());
            AddPage(std::move(page));
        }
        SetTitle(u"Install Wizard");
    }

    std::vector<TestPage*> pages;
    int cancelRequests = 0;
    bool allowCancel = true;

protected:
    void OnCancelRequest() override
    {
        ++cancelRequests;
        if (allowCancel)
            HVWizardPopupWnd::OnCancelRequest();
    }
};

// Steps run one per timer tick inside the wizard's own message loop, as a user's actions
// arrive between messages.
std::vector<std::function<void()>>* g_steps = nullptr;
size_t g_next = 0;

void CALLBACK RunStep(HWND, UINT, UINT_PTR, DWORD)
{
    if (g_steps && g_next < g_steps->size())
        (*g_steps)[g_next++]();
}

int RunScripted(TestWizard& wizard, std::vector<std::function<void()>> steps)
{
    g_steps = &steps;
    g_next = 0;
    const UINT_PTR timer = ::SetTimer(nullptr, 0, 20, RunStep);
    const int result = wizard.Run(nullptr);
    ::KillTimer(nullptr, timer);
    g_steps = nullptr;
    return result;
}

std::wstring HeaderTitle(const TestWizard& wizard)
{
    return WindowText(::GetDlgItem(wizard.Hwnd(), HVWizardPopupWnd::kTitleId));
}

void Press(const TestWizard& wizard, int id)
{
    ::SendMessageW(::GetDlgItem(wizard.Hwnd(), id), BM_CLICK, 0, 0);
}

// Keys as the dialog manager sees them: posted to the control that has the focus.
void Key(UINT message, WPARAM key)
{
    ::PostMessageW(::GetFocus(), message, key, 0);
}


TEST(HVWizardPopupWndTest, NextAsksEnterTestsAndBackReturnsToThePageShownBefore)
{
    TestWizard w(4);
    w.pages[1]->enter = false;      // B is passed over
    w.pages[3]->refuseNext = 1;     // D keeps the user once
    std::vector<std::wstring> titles;
    std::vector<bool> backEnabled;
    std::vector<std::wstring> nextCaptions;
    auto look = [&] {
        titles.push_back(HeaderTitle(w));
        backEnabled.push_back(::IsWindowEnabled(::GetDlgItem(w.Hwnd(), HVWizardPopupWnd::kBackId)) != FALSE);
        nextCaptions.push_back(WindowText(::GetDlgItem(w.Hwnd(), HVWizardPopupWnd::kNextId)));
    };
    const int result = RunScripted(w, {look, [&] { Press(w, HVWizardPopupWnd::kNextId); }, look,
                                       [&] { Press(w, HVWizardPopupWnd::kBackId); }, look,
                                       [&] { Press(w, HVWizardPopupWnd::kNextId); },
                                       [&] { Press(w, HVWizardPopupWnd::kNextId); }, look,
                                       [&] { Press(w, HVWizardPopupWnd::kNextId); }, look,
                                       [&] { Press(w, HVWizardPopupWnd::kNextId); }});
    EXPECT_EQ(result, HVWizardPopupWnd::kFinished);
    EXPECT_EQ(titles, (std::vector<std::wstring>{L"A", L"C", L"A", L"D", L"D"}));
    EXPECT_EQ(backEnabled, (std::vector<bool>{false, true, false, true, true}));
    EXPECT_EQ(nextCaptions, (std::vector<std::wstring>{L"&Next >", L"&Next >", L"&Next >", L"&Finish", L"&Finish"}));
}

TEST(HVWizardPopupWndTest, KeyboardEnterPressesNextEscCancelsAltReachesBack)
{
    TestWizard w(3);
    w.allowCancel = false;
    std::vector<std::wstring> titles;
    auto look = [&] { titles.push_back(HeaderTitle(w)); };
    // In the read-only agreement box Enter and Esc still act for the wizard.
    auto focusBox = [&] { ::SetFocus(w.pages[static_cast<size_t>(w.CurrentIndex())]->box_.Hwnd()); };
    const int result = RunScripted(w, {[&] { Key(WM_KEYDOWN, VK_RETURN); }, look, [&] { Key(WM_SYSCHAR, 'b'); }, look,
                                       [&] { Key(WM_SYSCHAR, 'n'); }, look, [&] { Key(WM_KEYDOWN, VK_ESCAPE); },
                                       focusBox, [&] { Key(WM_KEYDOWN, VK_ESCAPE); }, focusBox,
                                       [&] { Key(WM_KEYDOWN, VK_RETURN); }, look, [&] { w.allowCancel = true; },
                                       [&] { ::PostMessageW(w.Hwnd(), WM_CLOSE, 0, 0); }});
    EXPECT_EQ(result, HVWizardPopupWnd::kCancelled);
    EXPECT_EQ(titles, (std::vector<std::wstring>{L"B", L"A", L"B", L"C"}));
    EXPECT_EQ(w.cancelRequests, 3);  // Esc, Esc in the box, then the close box
}

TEST(HVWizardPopupWndTest, ArrowKeysMoveBetweenChoicesUnderABoldTitle)
{
    TestWizard w(1);
    std::vector<std::pair<bool, bool>> checked;  // first, second
    auto look = [&] { checked.push_back({w.pages[0]->first_.IsChecked(), w.pages[0]->second_.IsChecked()}); };
    LOGFONTW title = {};
    auto readTitleFont = [&] {
        const LPARAM font = ::SendDlgItemMessageW(w.Hwnd(), HVWizardPopupWnd::kTitleId, WM_GETFONT, 0, 0);
        ::GetObjectW(reinterpret_cast<HFONT>(font), sizeof title, &title);
    };
    const int result = RunScripted(w, {readTitleFont, [&] { ::SetFocus(w.pages[0]->first_.Hwnd()); }, [&] { Key(WM_KEYDOWN, VK_DOWN); },
                                       look, [&] { Key(WM_KEYDOWN, VK_DOWN); }, look, [&] { Key(WM_KEYDOWN, VK_UP); },
                                       look, [&] { w.Close(HVWizardPopupWnd::kCancelled); }});
    EXPECT_EQ(result, HVWizardPopupWnd::kCancelled);
    EXPECT_EQ(checked, (std::vector<std::pair<bool, bool>>{{false, true}, {true, false}, {false, true}}));
    EXPECT_EQ(title.lfWeight, FW_BOLD);
}

// Every control inside its page, every text as high as its wrapped lines need, the buttons
// inside the window and apart: at 100%, 150% and 200%.
TEST(HVWizardPopupWndTest, NothingIsClippedAtAnyScale)
{
    TestWizard w(2);
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
        for (int id : {HVWizardPopupWnd::kBackId, HVWizardPopupWnd::kNextId, HVWizardPopupWnd::kCancelId}) {
            RECT r = {};
            ::GetWindowRect(::GetDlgItem(w.Hwnd(), id), &r);
            ::MapWindowPoints(nullptr, w.Hwnd(), reinterpret_cast<POINT*>(&r), 2);
            if (r.right > client.right || r.bottom > client.bottom || r.left < previous.right)
                problems.push_back("button misplaced at " + std::to_string(dpi));
            previous = r;
        }
    };
    const int result = RunScripted(w, {[&] { check(96); }, [&] { check(144); }, [&] { check(192); },
                                       [&] { w.Close(HVWizardPopupWnd::kCancelled); }});
    EXPECT_EQ(result, HVWizardPopupWnd::kCancelled);
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
