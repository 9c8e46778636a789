#pragma once

#include <windows.h>

#include <utility>

// Sole owner of one system resource: closes it when dropped or replaced. Traits give the
// invalid value and the close call, so one template covers handles, find handles, modules,
// mapped views and the like.
template <class Traits>
class HVUniqueResource
{
public:
    using Type = typename Traits::Type;

    HVUniqueResource() = default;
    explicit HVUniqueResource(Type value) : value_(value) {}
    ~HVUniqueResource() { Reset(); }
    HVUniqueResource(const HVUniqueResource&) = delete;
    HVUniqueResource& operator=(const HVUniqueResource&) = delete;
    HVUniqueResource(HVUniqueResource&& other) noexcept : value_(other.Release()) {}
    HVUniqueResource& operator=(HVUniqueResource&& other) noexcept
    {
        if (this != &other)
            Reset(other.Release());
        return *this;
    }

    bool IsValid() const { return value_ != Traits::Invalid(); }
    explicit operator bool() const { return IsValid(); }
    Type Get() const { return value_; }

    // Closes the current value and takes the new one.
    void Reset(Type value = Traits::Invalid())
    {
        if (IsValid())
            Traits::Close(value_);
        value_ = value;
    }
    // Gives the value up without closing it.
    Type Release() { return std::exchange(value_, Traits::Invalid()); }
    // For out-parameters: closes the current value first.
    Type* Receive()
    {
        Reset();
        return &value_;
    }

private:
    Type value_ = Traits::Invalid();
};

struct HVHandleTraits
{
    using Type = HANDLE;
    static Type Invalid() { return nullptr; }
    static void Close(Type h) { ::CloseHandle(h); }
};

// CreateFileW reports failure as INVALID_HANDLE_VALUE, not as a null handle.
struct HVFileHandleTraits
{
    using Type = HANDLE;
    static Type Invalid() { return INVALID_HANDLE_VALUE; }
    static void Close(Type h) { ::CloseHandle(h); }
};

struct HVFindHandleTraits
{
    using Type = HANDLE;
    static Type Invalid() { return INVALID_HANDLE_VALUE; }
    static void Close(Type h) { ::FindClose(h); }
};

struct HVModuleTraits
{
    using Type = HMODULE;
    static Type Invalid() { return nullptr; }
    static void Close(Type h) { ::FreeLibrary(h); }
};

struct HVMappedViewTraits
{
    using Type = void*;
    static Type Invalid() { return nullptr; }
    static void Close(Type p) { ::UnmapViewOfFile(p); }
};

struct HVWindowTraits
{
    using Type = HWND;
    static Type Invalid() { return nullptr; }
    static void Close(Type h) { ::DestroyWindow(h); }
};

struct HVGdiObjectTraits
{
    using Type = HGDIOBJ;
    static Type Invalid() { return nullptr; }
    static void Close(Type h) { ::DeleteObject(h); }
};

// Memory the system allocated for the caller with LocalAlloc (security descriptors, messages).
struct HVLocalMemoryTraits
{
    using Type = HLOCAL;
    static Type Invalid() { return nullptr; }
    static void Close(Type h) { ::LocalFree(h); }
};

using HVHandle = HVUniqueResource<HVHandleTraits>;
using HVFileHandle = HVUniqueResource<HVFileHandleTraits>;
using HVFindHandle = HVUniqueResource<HVFindHandleTraits>;
using HVModule = HVUniqueResource<HVModuleTraits>;
using HVMappedView = HVUniqueResource<HVMappedViewTraits>;
using HVWindow = HVUniqueResource<HVWindowTraits>;
using HVGdiObject = HVUniqueResource<HVGdiObjectTraits>;
using HVLocalMemory = HVUniqueResource<HVLocalMemoryTraits>;
