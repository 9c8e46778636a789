#pragma once

#include <unknwn.h>

#include <utility>

// Owns one reference to a COM object.
template <class T>
class HVComPtr
{
public:
    HVComPtr() = default;
    ~HVComPtr() { Reset(); }
    HVComPtr(const HVComPtr& other) : p_(other.p_)
    {
        if (p_)
            p_->AddRef();
    }
    HVComPtr& operator=(const HVComPtr& other)
    {
        HVComPtr copy(other);
        std::swap(p_, copy.p_);
        return *this;
    }
    HVComPtr(HVComPtr&& other) noexcept : p_(std::exchange(other.p_, nullptr)) {}
    HVComPtr& operator=(HVComPtr&& other) noexcept
    {
        if (this != &other)
        {
            Reset();
            p_ = std::exchange(other.p_, nullptr);
        }
        return *this;
    }

    T* Get() const { return p_; }
    T* operator->() const { return p_; }
    explicit operator bool() const { return p_ != nullptr; }
    void Reset()
    {
        if (p_)
            std::exchange(p_, nullptr)->Release();
    }
    // For creation calls that hand out a new reference.
    T** Receive()
    {
        Reset();
        return &p_;
    }
    void** ReceiveVoid() { return reinterpret_cast<void**>(Receive()); }

    template <class U>
    HVComPtr<U> As(REFIID iid) const
    {
        HVComPtr<U> other;
        if (p_)
            p_->QueryInterface(iid, other.ReceiveVoid());
        return other;
    }

private:
    T* p_ = nullptr;
};
