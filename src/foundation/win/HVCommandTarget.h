#pragma once

#include "foundation/HVString.h"
#include "foundation/win/HVPostStringBlock.h"
#include "foundation/win/HVUniqueResource.h"

#include <windows.h>

#include <cstdint>
#include <functional>

// The hidden window through which other threads and processes give this process commands,
// above all strings sent with CPostString. Made once per process by the main thread; its
// messages are handled on that thread. Its class name carries a number from the clock, so two
// instances never share a class, and other processes find it by the class name's start.
class HVCommandTarget
{
public:
    static constexpr UINT kCommandMessage = WM_APP + 2000;  // 0x87D0
    static constexpr const wchar_t* kClassPrefix = L"Halvard Command Target Window Class - ";
    // The command message's parameters: the type in the low 16 bits of WPARAM, and, for a
    // string that came through a file, kViaFile and the file's sequence number above it; the
    // sender's process and thread identifiers in LPARAM (process in the high 32 bits).
    static constexpr WPARAM kViaFile = WPARAM(1) << 31;

    struct Command
    {
        int32_t type = 0;
        HVString text;
        DWORD senderProcess = 0;
        DWORD senderThread = 0;
    };
    using Handler = std::function<void(const Command&)>;

    HVCommandTarget() = default;
    HVCommandTarget(const HVCommandTarget&) = delete;
    HVCommandTarget& operator=(const HVCommandTarget&) = delete;

    // prefix: a word that names the program in the class name ("Sonora", "Install Wizard").
    bool Create(const HVString& prefix, Handler handler);
    HWND Hwnd() const { return window_.Get(); }
    DWORD ThreadId() const { return threadId_; }

    // The command target of another process, or null.
    static HWND FindInProcess(DWORD processId);
    // The file a string too long for the ring travels through, by sender and sequence number.
    static HVString TransferFile(DWORD senderProcess, DWORD senderThread, uint32_t sequence);

private:
    static LRESULT CALLBACK WindowProc(HWND hwnd, UINT message, WPARAM wParam, LPARAM lParam);
    void Receive(WPARAM wParam, LPARAM lParam);

    HVWindow window_;
    HVPostStringBlock block_;
    DWORD threadId_ = 0;
    Handler handler_;
};
