#pragma once

#include "foundation/win/HVUniqueResource.h"

#include <string>

namespace e2e
{
// Holds a file open with share mode 0 in another process (HoldLock.exe) for as long as this
// object lives, as a running program would hold its own files. The file is created when it is
// missing. After construction IsHeld() tells whether the lock is really in place (Error() says
// why not); the destructor (or Release()) lets go and waits for the holder to end.
class HeldFileLock
{
public:
    explicit HeldFileLock(std::wstring path);
    ~HeldFileLock();
    HeldFileLock(const HeldFileLock&) = delete;
    HeldFileLock& operator=(const HeldFileLock&) = delete;

    bool IsHeld() const { return held_; }
    const std::wstring& Error() const { return error_; }
    const std::wstring& Path() const { return path_; }
    void Release();

private:
    std::wstring path_;
    std::wstring error_;
    bool held_ = false;
    HVHandle release_;
    HVHandle ready_;
    HVHandle process_;
};
}
