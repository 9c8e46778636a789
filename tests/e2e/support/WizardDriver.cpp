#include "WizardDriver.h"

#include "TestPaths.h"
#include "WindowInspector.h"

#include <algorithm>

namespace e2e
{
namespace
{
std::wstring ClassOf(HWND hwnd)
{
    wchar_t name[64] = {};
    ::GetClassNameW(hwnd, name, 64);
    return name;
}

struct Search
{
    DWORD processId;
    HWND found = nullptr;
};

BOOL CALLBACK FindFrame(HWND hwnd, LPARAM param)
{
    auto* search = reinterpret_cast<Search*>(param);
    DWORD pid = 0;
    ::GetWindowThreadProcessId(hwnd, &pid);
    if (pid == search->processId && ::IsWindowVisible(hwnd) && ClassOf(hwnd) == L"HVPopupWnd" &&
        ::GetDlgItem(hwnd, WizardView::kNextId)) {
        search->found = hwnd;
        return FALSE;
    }
    return TRUE;
}

std::vector<HWND> Children(HWND parent)
{
    std::vector<HWND> list;
    for (HWND child = ::GetWindow(parent, GW_CHILD); child; child = ::GetWindow(child, GW_HWNDNEXT))
        list.push_back(child);
    return list;
}
}   // namespace

std::wstring ControlText(HWND control)
{
    wchar_t text[4096] = {};
    DWORD_PTR length = 0;
    if (control)
        ::SendMessageTimeoutW(control, WM_GETTEXT, 4096, reinterpret_cast<LPARAM>(text), SMTO_ABORTIFHUNG, 2000, &length);
    return text;
}

bool IsChecked(HWND control)
{
    DWORD_PTR state = 0;
    return control &&
           ::SendMessageTimeoutW(control, BM_GETCHECK, 0, 0, SMTO_ABORTIFHUNG, 2000, &state) && state == BST_CHECKED;
}

void Click(HWND control)
{
    if (control)
        ::PostMessageW(control, BM_CLICK, 0, 0);
}

void TypeText(HWND edit, const std::wstring& text)
{
    if (!edit)
        return;
    // Queued like keystrokes, so they keep their order with the clicks around them.
    ::PostMessageW(edit, EM_SETSEL, 0, -1);
    ::PostMessageW(edit, WM_CLEAR, 0, 0);
    for (wchar_t ch : text)
        ::PostMessageW(edit, WM_CHAR, ch, 1);
}

HWND WizardView::Control(const std::wstring& caption) const
{
    for (HWND child : Children(page))
        if (StripAccelerator(ControlText(child)) == caption)
            return child;
    return nullptr;
}

HWND WizardView::ControlOfClass(const std::wstring& className) const
{
    for (HWND child : Children(page))
        if (_wcsicmp(ClassOf(child).c_str(), className.c_str()) == 0)
            return child;
    return nullptr;
}

std::vector<std::wstring> WizardView::Texts() const
{
    std::vector<std::wstring> texts;
    for (HWND child : Children(page)) {
        const std::wstring text = ControlText(child);
        if (!text.empty())
            texts.push_back(text);
    }
    return texts;
}

bool FindWizard(DWORD processId, WizardView& view)
{
    Search search{processId};
    ::EnumWindows(FindFrame, reinterpret_cast<LPARAM>(&search));
    view = WizardView();
    if (!search.found)
        return false;
    view.wizard = search.found;
    auto visiblePage = [&view] {
        HWND page = nullptr;
        for (HWND child : Children(view.wizard))
            if (::IsWindowVisible(child) && ClassOf(child) == L"HVWizardPageWnd")
                page = child;
        return page;
    };
    // The wizard hides a page, sets the next one's header, then shows it. Reading the header
    // between two sightings of the same page keeps a new page from being taken with the old header.
    view.page = visiblePage();
    view.windowTitle = ControlText(view.wizard);
    view.title = ControlText(::GetDlgItem(view.wizard, WizardView::kTitleId));
    view.subtitle = ControlText(::GetDlgItem(view.wizard, WizardView::kSubtitleId));
    view.enabled = ::IsWindowEnabled(view.wizard) != FALSE;
    return view.page != nullptr && visiblePage() == view.page;
}

void ClickNext(const WizardView& view)
{
    Click(view.Button(WizardView::kNextId));
}

void ClickBack(const WizardView& view)
{
    Click(view.Button(WizardView::kBackId));
}

void ClickCancel(const WizardView& view)
{
    Click(view.Button(IDCANCEL));
}

bool Choose(const WizardView& view, const std::wstring& caption)
{
    HWND control = view.Control(caption);
    Click(control);
    return control != nullptr;
}

WizardStep NextOn(const std::wstring& page, bool samePage)
{
    return {page, [](const WizardView& v) { ClickNext(v); }, samePage};
}

WizardStep BackOn(const std::wstring& page)
{
    return {page, [](const WizardView& v) { ClickBack(v); }};
}

WizardStep CancelOn(const std::wstring& page)
{
    return {page, [](const WizardView& v) { ClickCancel(v); }};
}

WizardStep ChooseOn(const std::wstring& page, const std::wstring& choice)
{
    return {page, [choice](const WizardView& v) {
                Choose(v, choice);
                ClickNext(v);
            }};
}

std::vector<WizardStep> CustomInstall(const std::vector<WizardStep>& destination)
{
    std::vector<WizardStep> steps = {NextOn(L"Welcome"), ChooseOn(L"Setup Type", L"Custom"), NextOn(L"Setup Type")};
    steps.insert(steps.end(), destination.begin(), destination.end());
    steps.insert(steps.end(), {NextOn(L"File Associations"), NextOn(L"Create Shortcuts"), NextOn(L"Install Complete")});
    return steps;
}

WizardStep FileTypesOn(const std::vector<WPARAM>& keys)
{
    return {L"File Associations", [keys](const WizardView& v) {
                Click(v.Control(L"Unselect All"));
                const HWND list = v.ControlOfClass(L"SysListView32");
                for (const WPARAM key : keys) {
                    ::PostMessageW(list, WM_KEYDOWN, key, 0);
                    ::PostMessageW(list, WM_KEYUP, key, 0);
                }
                ClickNext(v);
            }};
}

WizardUser::WizardUser(std::vector<WizardStep> steps) : steps_(std::move(steps))
{
}

std::function<bool(DWORD)> WizardUser::Poller()
{
    return [this](DWORD processId) {
        Poll(processId);
        return true;
    };
}

void WizardUser::Poll(DWORD processId)
{
    WizardView view;
    if (!FindWizard(processId, view))
        return;
    last_ = view;
    if (windowTitles_.empty() || windowTitles_.back() != view.windowTitle)
        windowTitles_.push_back(view.windowTitle);
    if (view.page != lastPage_) {
        lastPage_ = view.page;
        pages_.push_back(view.title);
    }
    if (!view.enabled || Finished())
        return;
    const WizardStep& step = steps_[next_];
    if (view.title != step.title || (view.page == actedOn_) != step.samePage || (step.when && !step.when(view)))
        return;
    ++next_;
    actedOn_ = view.page;
    step.act(view);
}

std::vector<std::wstring> WizardUser::PagesBeforeInstall() const
{
    std::vector<std::wstring> pages = pages_;
    const std::vector<std::wstring> after = {L"Install Complete", L"Create Shortcuts", L"File Associations",
                                             L"Installing Dependencies", L"Copying Files", L"Installing Plugins"};
    while (!pages.empty() && std::find(after.begin(), after.end(), pages.back()) != after.end())
        pages.pop_back();
    return pages;
}

std::string WizardUser::Describe() const
{
    std::wstring text = L"steps done: " + std::to_wstring(next_) + L" of " + std::to_wstring(steps_.size()) +
                        L"\npages seen:";
    for (const std::wstring& page : pages_)
        text += L" [" + page + L"]";
    text += L"\nwindow titles:";
    for (const std::wstring& title : windowTitles_)
        text += L" [" + title + L"]";
    text += L"\nlast page texts:";
    for (const std::wstring& line : last_.Texts())
        text += L"\n  " + line;
    return Utf8(text);
}
}
