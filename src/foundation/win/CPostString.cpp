#include "foundation/win/CPostString.h"

#include "foundation/HVLog.h"
#include "foundation/HVLogTimer.h"
#include "foundation/HVPostStringRing.h"
#include "foundation/win/HVCommandTarget.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVPostStringBlock.h"

#include <atomic>

bool CPostString::Post(HWND target, int32_t type, const HVString& text)
{
    HVLogTimer timer("CPostString::Post");
    const uint32_t window = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(target));
    HVLog::Write(HVLog::kInfo, "CPostString::Post", u"Sending <%s>, type %d to %lx", text, type, window);

    if (!::IsWindow(target)) {
        timer.SetResult(0);
        return false;
    }
    const DWORD process = ::GetCurrentProcessId();
    const DWORD thread = ::GetCurrentThreadId();
    WPARAM wParam = static_cast<WPARAM>(type & 0xFFFF);
    const LPARAM lParam = static_cast<LPARAM>((static_cast<uint64_t>(process) << 32) | thread);

    bool written = false;
    HVPostStringBlock block;
    if (HVPostStringRing::Fits(static_cast<size_t>(text.GetLength())) && block.Open(target))
        block.Locked([&](uint8_t* bytes) { written = HVPostStringRing::Write(bytes, type, text); });
    if (!written) {
        HVLog::Write(HVLog::kInfo, "CPostString::Post", u"Using file to send string");
        static std::atomic<uint32_t> sequence{0};
        const uint32_t number = sequence++ & 0x7FFF;
        const HVString file = HVCommandTarget::TransferFile(process, thread, number);
        if (!HVFileSystem::WriteFile(file, text.c_str(), static_cast<size_t>(text.GetLength()) * 2)) {
            timer.SetResult(0);
            return false;
        }
        wParam |= HVCommandTarget::kViaFile | (static_cast<WPARAM>(number) << 16);
    }
    const bool posted = ::PostMessageW(target, HVCommandTarget::kCommandMessage, wParam, lParam) != FALSE;
    HVLog::Write(HVLog::kInfo, "CPostString::Post", u"Actual message, type %d, WParam %x, LParam %x, Window %lx", type,
                 static_cast<uint64_t>(wParam), static_cast<uint64_t>(lParam), window);
    timer.SetResult(posted ? 1 : 0);
    return posted;
}
