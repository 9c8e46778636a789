#pragma once

#include "foundation/HVFormatArg.h"
#include "foundation/HVStringData.h"

#include <compare>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

class IHVStringManager;

// The library's wide (UTF-16) string. Copies share one buffer by reference and the buffer is
// copied only when a sharer writes (copy-on-write). The buffer header (HVStringData) names the
// manager that frees it. An empty string always uses its manager's shared empty buffer, so an
// empty HVString never owns memory.
//
// Counting is atomic, so copies of one string may be made and dropped on several threads at
// once; one HVString object itself belongs to one thread at a time.
class HVString
{
public:
    static constexpr int32_t npos = -1;

    HVString();
    explicit HVString(IHVStringManager& manager);
    HVString(const char16_t* text);
    HVString(const char16_t* text, int32_t length);
    HVString(std::u16string_view text);
    HVString(const HVString& other);
    HVString(HVString&& other) noexcept;
    ~HVString();

    HVString& operator=(const HVString& other);
    HVString& operator=(HVString&& other) noexcept;
    HVString& operator=(const char16_t* text);
    HVString& operator=(std::u16string_view text);

#ifdef _WIN32
    HVString(const wchar_t* text);
    HVString(const wchar_t* text, int32_t length);
    HVString& operator=(const wchar_t* text);
    // For Win32 calls: the characters as a zero-terminated wide string.
    const wchar_t* w() const { return reinterpret_cast<const wchar_t*>(data_->Chars()); }
    wchar_t* GetWBuffer(int32_t minCapacity)
    {
        return reinterpret_cast<wchar_t*>(GetBuffer(minCapacity));
    }
#endif

    // Conversions with UTF-8. Ill-formed input becomes U+FFFD, never an error.
    static HVString FromUtf8(std::string_view utf8);
    std::string ToUtf8() const;

    // printf-style formatting: %d %i %u %x %X %o %c %s %S %f %e %g %p %%, flags "-+ 0#", width
    // and precision (also "*"), and the length modifiers h, hh, l, ll, I64, I32, z, j, t, L, w,
    // which are accepted and ignored because every argument carries its own type.
    template <class... Args>
    static HVString Format(const char16_t* format, const Args&... args)
    {
        const HVFormatArg list[] = {HVFormatArg(args)..., HVFormatArg()};
        return FormatList(format, list, sizeof...(Args));
    }
    template <class... Args>
    void AppendFormat(const char16_t* format, const Args&... args)
    {
        Append(Format(format, args...));
    }
    static HVString FormatList(const char16_t* format, const HVFormatArg* args, size_t count);

    int32_t GetLength() const { return data_->length; }
    bool IsEmpty() const { return data_->length == 0; }
    const char16_t* c_str() const { return data_->Chars(); }
    std::u16string_view view() const { return {data_->Chars(), static_cast<size_t>(data_->length)}; }
    operator std::u16string_view() const { return view(); }
    char16_t operator[](int32_t index) const { return data_->Chars()[index]; }
    char16_t GetAt(int32_t index) const { return data_->Chars()[index]; }
    void SetAt(int32_t index, char16_t ch);

    void Empty();
    HVString& Append(std::u16string_view text);
    HVString& Append(char16_t ch);
    HVString& operator+=(std::u16string_view text) { return Append(text); }
    HVString& operator+=(const HVString& text) { return Append(text.view()); }
    HVString& operator+=(const char16_t* text) { return Append(std::u16string_view(text ? text : u"")); }
    HVString& operator+=(char16_t ch) { return Append(ch); }
    void Insert(int32_t index, std::u16string_view text);
    void Delete(int32_t index, int32_t count = 1);
    void Truncate(int32_t length);

    // Comparison: ordinal by code unit, or with simple case folding (ASCII, Latin-1, Latin
    // Extended-A, Greek and Cyrillic), as file names on Windows compare.
    int Compare(std::u16string_view other) const;
    int CompareNoCase(std::u16string_view other) const;
    bool EqualsNoCase(std::u16string_view other) const { return CompareNoCase(other) == 0; }
    bool StartsWith(std::u16string_view prefix) const;
    bool StartsWithNoCase(std::u16string_view prefix) const;
    bool EndsWith(std::u16string_view suffix) const;
    bool EndsWithNoCase(std::u16string_view suffix) const;

    int32_t Find(char16_t ch, int32_t start = 0) const;
    int32_t Find(std::u16string_view text, int32_t start = 0) const;
    int32_t FindNoCase(std::u16string_view text, int32_t start = 0) const;
    int32_t ReverseFind(char16_t ch) const;
    int32_t FindOneOf(std::u16string_view chars, int32_t start = 0) const;
    // Replaces every occurrence; returns how many were replaced.
    int32_t Replace(std::u16string_view from, std::u16string_view to);
    int32_t Replace(char16_t from, char16_t to);

    HVString Mid(int32_t start, int32_t count = npos) const;
    HVString Left(int32_t count) const;
    HVString Right(int32_t count) const;

    HVString& Trim();
    HVString& TrimLeft();
    HVString& TrimRight();
    HVString& Trim(std::u16string_view chars);
    HVString& TrimLeft(std::u16string_view chars);
    HVString& TrimRight(std::u16string_view chars);
    HVString& MakeUpper();
    HVString& MakeLower();

    static char16_t ToUpper(char16_t ch);
    static char16_t ToLower(char16_t ch);

    // Direct writing: GetBuffer locks the buffer for this string alone (reference count -1)
    // and returns room for at least minCapacity characters; ReleaseBuffer ends the lock and
    // sets the length (-1: up to the first zero).
    char16_t* GetBuffer(int32_t minCapacity);
    void ReleaseBuffer(int32_t newLength = -1);
    void Preallocate(int32_t capacity);

    // For tests and diagnostics of the sharing rules.
    const HVStringData* GetData() const { return data_; }
    IHVStringManager& GetManager() const { return *data_->manager; }

    friend bool operator==(const HVString& a, const HVString& b) { return a.view() == b.view(); }
    friend bool operator==(const HVString& a, std::u16string_view b) { return a.view() == b; }
    friend bool operator==(const HVString& a, const char16_t* b)
    {
        return a.view() == std::u16string_view(b ? b : u"");
    }
    friend std::strong_ordering operator<=>(const HVString& a, const HVString& b)
    {
        return a.view() <=> b.view();
    }

private:
    void Assign(const char16_t* text, int32_t length);
    void Release();
    // Makes the buffer this string's own with room for `capacity` characters, keeping the
    // characters. Returns false when memory can't be had (the string is then unchanged).
    bool PrepareWrite(int32_t capacity);
    void SetLengthInternal(int32_t length);

    HVStringData* data_;
};

HVString operator+(const HVString& a, std::u16string_view b);
HVString operator+(std::u16string_view a, const HVString& b);
HVString operator+(const HVString& a, const HVString& b);
HVString operator+(const HVString& a, const char16_t* b);
HVString operator+(const char16_t* a, const HVString& b);
HVString operator+(const HVString& a, char16_t b);

template <>
struct std::hash<HVString>
{
    size_t operator()(const HVString& s) const noexcept
    {
        return std::hash<std::u16string_view>()(s.view());
    }
};
