#pragma once

#include <objbase.h>

// Initialises COM on the calling thread for the object's lifetime (apartment threaded, as the
// shell's dialogs and links want).
class HVComInit
{
public:
    HVComInit() : hr_(::CoInitializeEx(nullptr, COINIT_APARTMENTTHREADED | COINIT_DISABLE_OLE1DDE)) {}
    ~HVComInit()
    {
        if (SUCCEEDED(hr_))
            ::CoUninitialize();
    }
    HVComInit(const HVComInit&) = delete;
    HVComInit& operator=(const HVComInit&) = delete;
    bool Succeeded() const { return SUCCEEDED(hr_); }

private:
    HRESULT hr_;
};
