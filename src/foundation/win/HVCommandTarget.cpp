#include "foundation/win/HVCommandTarget.h"

#include "foundation/HVLog.h"
#include "foundation/HVPostStringRing.h"
#include "foundation/win/HVFileSystem.h"

#include <chrono>
#include <cstring>
#include <cwchar>

bool HVCommandTarget::Create(const HVString& prefix, Handler handler)
{
    handler_ = std::move(handler);
    const auto micro = std::chrono::duration_cast<std::chrono::microseconds>(
        std::chrono::steady_clock::now().time_since_epoch()).count();
    const HVString className = HVString(reinterpret_cast<const char16_t*>(kClassPrefix)) +
                               HVString::Format(u"%s0x%X", prefix, static_cast<uint32_t>(micro / 1000000));
    WNDCLASSEXW wc = {};
    wc.cbSize = sizeof(wc);
    wc.lpfnWndProc = &HVCommandTarget::WindowProc;
    wc.hInstance = ::GetModuleHandleW(nullptr);
    wc.lpszClassName = className.w();
    if (!::RegisterClassExW(&wc) && ::GetLastError() != ERROR_CLASS_ALREADY_EXISTS) {
        HVLog::Write(HVLog::kError, "HVCommandTarget::Create", u"RegisterClassEx failed (%d)",
                     static_cast<int32_t>(::GetLastError()));
        return false;
    }
    window_.Reset(::CreateWindowExW(WS_EX_NOACTIVATE | WS_EX_NOPARENTNOTIFY, className.w(), L"", WS_POPUP, 0, 0, 0,
                                    0, ::GetDesktopWindow(), nullptr, wc.hInstance, this));
    if (!window_)
        return false;
    ::SetWindowLongPtrW(window_.Get(), GWLP_USERDATA, reinterpret_cast<LONG_PTR>(this));
    threadId_ = ::GetCurrentThreadId();
    return block_.Open(window_.Get());
}

LRESULT CALLBACK HVCommandTarget::WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam)
{
    if (message == kCommandMessage) {
        if (auto* self = reinterpret_cast<HVCommandTarget*>(::GetWindowLongPtrW(hwnd, GWLP_USERDATA)))
            self->Receive(wParam, lParam);
        return 0;
    }
    return ::DefWindowProcW(hwnd, message, wParam, lParam);
}

HVString HVCommandTarget::TransferFile(DWORD senderProcess, DWORD senderThread, uint32_t sequence)
{
    wchar_t temp[MAX_PATH + 1] = {};
    ::GetTempPathW(MAX_PATH, temp);
    return HVString(temp) + HVString::Format(u"Post String %X-%X-%X.txt", static_cast<uint32_t>(senderProcess),
                                             static_cast<uint32_t>(senderThread), sequence);
}

void HVCommandTarget::Receive(WPARAM wParam, LPARAM lParam)
{
    Command command;
    command.senderProcess = static_cast<DWORD>(static_cast<uint64_t>(lParam) >> 32);
    command.senderThread = static_cast<DWORD>(static_cast<uint64_t>(lParam) & 0xFFFFFFFF);
    bool received = false;
    if (wParam & kViaFile) {
        command.type = static_cast<int32_t>(wParam & 0xFFFF);
        const HVString file = TransferFile(command.senderProcess, command.senderThread,
                                           static_cast<uint32_t>((wParam >> 16) & 0x7FFF));
        std::vector<uint8_t> bytes;
        received = HVFileSystem::ReadFile(file, bytes);
        HVFileSystem::DeleteFile(file);
        const int32_t characters = static_cast<int32_t>(bytes.size() / 2);
        char16_t* out = command.text.GetBuffer(characters);
        std::memcpy(out, bytes.data(), static_cast<size_t>(characters) * 2);
        command.text.ReleaseBuffer(characters);
    } else {
        block_.Locked([&](uint8_t* block) { received = HVPostStringRing::Read(block, command.type, command.text); });
    }
    if (!received) {
        HVLog::Write(HVLog::kWarning, "HVCommandTarget::Receive", u"A command from process %d carried no string",
                     static_cast<int32_t>(command.senderProcess));
        return;
    }
    if (handler_)
        handler_(command);
}

HWND HVCommandTarget::FindInProcess(DWORD processId)
{
    struct Search
    {
        DWORD processId;
        HWND found;
    } search{processId, nullptr};
    ::EnumWindows(
        [](HWND hwnd, LPARAM param) -> BOOL {
            auto& s = *reinterpret_cast<Search*>(param);
            DWORD owner = 0;
            ::GetWindowThreadProcessId(hwnd, &owner);
            wchar_t name[256] = {};
            if (owner == s.processId && ::GetClassNameW(hwnd, name, 256) &&
                std::wcsncmp(name, kClassPrefix, std::wcslen(kClassPrefix)) == 0) {
                s.found = hwnd;
                return FALSE;
            }
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&search));
    return search.found;
}
