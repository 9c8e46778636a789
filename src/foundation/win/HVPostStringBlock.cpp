#include "foundation/win/HVPostStringBlock.h"

#include "foundation/HVLog.h"
#include "foundation/HVPostStringRing.h"
#include "foundation/HVString.h"

bool HVPostStringBlock::Open(HWND target)
{
    const uint32_t id = static_cast<uint32_t>(reinterpret_cast<uintptr_t>(target));
    const HVString blockName = HVString::Format(u"Post String Block - %X", id);
    const HVString lockName = HVString::Format(u"Post String Lock - %X", id);
    mapping_.Reset(::CreateFileMappingW(INVALID_HANDLE_VALUE, nullptr, PAGE_READWRITE, 0,
                                        static_cast<DWORD>(HVPostStringRing::kBlockSize), blockName.w()));
    lock_.Reset(::CreateMutexW(nullptr, FALSE, lockName.w()));
    if (mapping_)
        view_.Reset(::MapViewOfFile(mapping_.Get(), FILE_MAP_ALL_ACCESS, 0, 0, HVPostStringRing::kBlockSize));
    if (!view_ || !lock_) {
        HVLog::Write(HVLog::kError, "HVPostStringBlock::Open", u"No shared block for window %X (error %d)", id,
                     static_cast<int32_t>(::GetLastError()));
        return false;
    }
    return true;
}

bool HVPostStringBlock::Locked(const std::function<void(uint8_t* block)>& use)
{
    if (!view_ || !lock_)
        return false;
    const DWORD wait = ::WaitForSingleObject(lock_.Get(), 5000);
    // An abandoned lock is ours now; the block is checked by its magic and indexes anyway.
    if (wait != WAIT_OBJECT_0 && wait != WAIT_ABANDONED) {
        HVLog::Write(HVLog::kError, "HVPostStringBlock::Locked", u"The lock could not be had (wait %d)",
                     static_cast<int32_t>(wait));
        return false;
    }
    uint8_t* block = static_cast<uint8_t*>(view_.Get());
    HVPostStringRing::Prepare(block);
    use(block);
    ::ReleaseMutex(lock_.Get());
    return true;
}
