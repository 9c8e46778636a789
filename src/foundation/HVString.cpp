#include "foundation/HVString.h"

#include "foundation/HVDefaultStringManager.h"

#include <algorithm>
#include <cstring>

namespace
{
int32_t Clamp32(size_t n)
{
    return n > static_cast<size_t>(INT32_MAX / 2) ? INT32_MAX / 2 : static_cast<int32_t>(n);
}

int32_t Length16(const char16_t* text)
{
    if (!text)
        return 0;
    size_t n = 0;
    while (text[n])
        ++n;
    return Clamp32(n);
}

// Simple one-to-one case mapping for the scripts that file and registry names use in practice.
// Full Unicode folding (which can change lengths) is not what Windows does for names either.
char16_t FoldUpper(char16_t c)
{
    if (c < 0x80)
        return (c >= u'a' && c <= u'z') ? static_cast<char16_t>(c - 32) : c;
    if (c >= 0xE0 && c <= 0xFE && c != 0xF7)
        return static_cast<char16_t>(c - 32);
    if (c == 0xFF)
        return 0x178;
    if (c >= 0x100 && c <= 0x17F) {
        // Latin Extended-A pairs upper/lower on even/odd code points, with a shifted run in
        // the middle (0x139..0x148 and 0x179..0x17E pair odd/even).
        if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E))
            return (c % 2 == 0) ? static_cast<char16_t>(c - 1) : c;
        if (c == 0x131 || c == 0x138 || c == 0x149 || c == 0x17F)
            return c;
        return (c % 2 == 1) ? static_cast<char16_t>(c - 1) : c;
    }
    if (c >= 0x3B1 && c <= 0x3CB && c != 0x3C2)
        return static_cast<char16_t>(c - 32);
    if (c >= 0x430 && c <= 0x44F)
        return static_cast<char16_t>(c - 32);
    if (c >= 0x450 && c <= 0x45F)
        return static_cast<char16_t>(c - 80);
    if (c >= 0xFF41 && c <= 0xFF5A)
        return static_cast<char16_t>(c - 32);
    return c;
}

char16_t FoldLower(char16_t c)
{
    if (c < 0x80)
        return (c >= u'A' && c <= u'Z') ? static_cast<char16_t>(c + 32) : c;
    if (c >= 0xC0 && c <= 0xDE && c != 0xD7)
        return static_cast<char16_t>(c + 32);
    if (c == 0x178)
        return 0xFF;
    if (c >= 0x100 && c <= 0x17F) {
        if ((c >= 0x139 && c <= 0x148) || (c >= 0x179 && c <= 0x17E))
            return (c % 2 == 1) ? static_cast<char16_t>(c + 1) : c;
        if (c == 0x130 || c == 0x138 || c == 0x149 || c == 0x17F)
            return c;
        return (c % 2 == 0) ? static_cast<char16_t>(c + 1) : c;
    }
    if (c >= 0x391 && c <= 0x3AB && c != 0x3A2)
        return static_cast<char16_t>(c + 32);
    if (c >= 0x410 && c <= 0x42F)
        return static_cast<char16_t>(c + 32);
    if (c >= 0x400 && c <= 0x40F)
        return static_cast<char16_t>(c + 80);
    if (c >= 0xFF21 && c <= 0xFF3A)
        return static_cast<char16_t>(c + 32);
    return c;
}

bool IsBlank(char16_t c)
{
    return c == u' ' || c == u'\t' || c == u'\r' || c == u'\n' || c == u'\v' || c == u'\f' ||
           c == 0xA0 || c == 0x3000 || c == 0xFEFF;
}

void CopyChars(char16_t* to, const char16_t* from, int32_t count)
{
    if (count > 0)
        std::memmove(to, from, static_cast<size_t>(count) * sizeof(char16_t));
}
}   // namespace

char16_t HVString::ToUpper(char16_t ch) { return FoldUpper(ch); }
char16_t HVString::ToLower(char16_t ch) { return FoldLower(ch); }

HVString::HVString() : data_(HVDefaultStringManager::Instance().GetNil()) {}

HVString::HVString(IHVStringManager& manager) : data_(manager.GetNil()) {}

HVString::HVString(const char16_t* text) : HVString() { Assign(text, Length16(text)); }

HVString::HVString(const char16_t* text, int32_t length) : HVString()
{
    Assign(text, text ? std::max(length, 0) : 0);
}

HVString::HVString(std::u16string_view text) : HVString() { Assign(text.data(), Clamp32(text.size())); }

HVString::HVString(const HVString& other)
{
    HVStringData* d = other.data_;
    if (d->IsLocked()) {
        // A locked buffer belongs to its one writer; a copy gets its own characters.
        data_ = d->manager->GetNil();
        Assign(d->Chars(), d->length);
    } else {
        if (!d->IsStatic())
            d->AddRef();
        data_ = d;
    }
}

HVString::HVString(HVString&& other) noexcept : data_(other.data_)
{
    other.data_ = data_->manager->GetNil();
}

HVString::~HVString() { Release(); }

void HVString::Release() { data_->Release(); }

HVString& HVString::operator=(const HVString& other)
{
    if (this != &other && data_ != other.data_) {
        HVString copy(other);
        std::swap(data_, copy.data_);
    }
    return *this;
}

HVString& HVString::operator=(HVString&& other) noexcept
{
    if (this != &other) {
        Release();
        data_ = other.data_;
        other.data_ = data_->manager->GetNil();
    }
    return *this;
}

HVString& HVString::operator=(const char16_t* text)
{
    Assign(text, Length16(text));
    return *this;
}

HVString& HVString::operator=(std::u16string_view text)
{
    Assign(text.data(), Clamp32(text.size()));
    return *this;
}

#ifdef _WIN32
HVString::HVString(const wchar_t* text) : HVString(reinterpret_cast<const char16_t*>(text)) {}
HVString::HVString(const wchar_t* text, int32_t length)
    : HVString(reinterpret_cast<const char16_t*>(text), length)
{
}
HVString& HVString::operator=(const wchar_t* text)
{
    return *this = reinterpret_cast<const char16_t*>(text);
}
#endif

void HVString::Assign(const char16_t* text, int32_t length)
{
    if (length <= 0) {
        Empty();
        return;
    }
    // The text may point into our own buffer (s = s.Mid(...)): copy into a fresh buffer
    // before the old one is dropped.
    IHVStringManager* manager = data_->manager;
    HVStringData* fresh = manager->Allocate(length);
    if (!fresh)
        return;
    CopyChars(fresh->Chars(), text, length);
    fresh->Chars()[length] = 0;
    fresh->length = length;
    Release();
    data_ = fresh;
}

void HVString::Empty()
{
    IHVStringManager* manager = data_->manager;
    Release();
    data_ = manager->GetNil();
}

bool HVString::PrepareWrite(int32_t capacity)
{
    if (capacity < data_->length)
        capacity = data_->length;
    const bool ownBuffer = !data_->IsStatic() && (data_->IsLocked() || !data_->IsShared());
    if (ownBuffer) {
        if (capacity <= data_->capacity)
            return true;
        // Grow geometrically so that repeated appends stay linear.
        int64_t wanted = std::max<int64_t>(capacity, static_cast<int64_t>(data_->capacity) * 3 / 2);
        wanted = std::min<int64_t>(wanted, INT32_MAX / 2);
        HVStringData* grown = data_->manager->Reallocate(data_, static_cast<int32_t>(wanted));
        if (!grown)
            return false;
        data_ = grown;
        return true;
    }
    HVStringData* fresh = data_->manager->Allocate(capacity);
    if (!fresh)
        return false;
    CopyChars(fresh->Chars(), data_->Chars(), data_->length);
    fresh->length = data_->length;
    fresh->Chars()[fresh->length] = 0;
    Release();
    data_ = fresh;
    return true;
}

void HVString::SetLengthInternal(int32_t length)
{
    if (length <= 0) {
        Empty();
        return;
    }
    data_->length = length;
    data_->Chars()[length] = 0;
}

void HVString::SetAt(int32_t index, char16_t ch)
{
    if (index < 0 || index >= data_->length || !PrepareWrite(data_->length))
        return;
    data_->Chars()[index] = ch;
}

HVString& HVString::Append(std::u16string_view text)
{
    const int32_t add = Clamp32(text.size());
    if (add == 0)
        return *this;
    const int32_t oldLength = data_->length;
    if (static_cast<int64_t>(oldLength) + add > INT32_MAX / 2)
        return *this;
    // The text may live in our own buffer; remember where before the buffer can move.
    const char16_t* own = data_->Chars();
    const bool aliased = text.data() >= own && text.data() <= own + oldLength;
    const ptrdiff_t offset = aliased ? text.data() - own : 0;
    if (!PrepareWrite(oldLength + add))
        return *this;
    const char16_t* from = aliased ? data_->Chars() + offset : text.data();
    CopyChars(data_->Chars() + oldLength, from, add);
    SetLengthInternal(oldLength + add);
    return *this;
}

HVString& HVString::Append(char16_t ch) { return Append(std::u16string_view(&ch, 1)); }

void HVString::Insert(int32_t index, std::u16string_view text)
{
    index = std::clamp(index, 0, data_->length);
    HVString tail = Mid(index);
    Truncate(index);
    Append(text);
    Append(tail.view());
}

void HVString::Delete(int32_t index, int32_t count)
{
    if (index < 0 || count <= 0 || index >= data_->length)
        return;
    count = std::min(count, data_->length - index);
    if (!PrepareWrite(data_->length))
        return;
    char16_t* chars = data_->Chars();
    CopyChars(chars + index, chars + index + count, data_->length - index - count);
    SetLengthInternal(data_->length - count);
}

void HVString::Truncate(int32_t length)
{
    if (length < 0 || length >= data_->length)
        return;
    if (length == 0 || !PrepareWrite(length)) {
        if (length == 0)
            Empty();
        return;
    }
    SetLengthInternal(length);
}

int HVString::Compare(std::u16string_view other) const
{
    const int c = view().compare(other);
    return c < 0 ? -1 : (c > 0 ? 1 : 0);
}

int HVString::CompareNoCase(std::u16string_view other) const
{
    const std::u16string_view me = view();
    const size_t n = std::min(me.size(), other.size());
    for (size_t i = 0; i < n; ++i) {
        const char16_t a = FoldUpper(me[i]);
        const char16_t b = FoldUpper(other[i]);
        if (a != b)
            return a < b ? -1 : 1;
    }
    if (me.size() == other.size())
        return 0;
    return me.size() < other.size() ? -1 : 1;
}

bool HVString::StartsWith(std::u16string_view prefix) const { return view().substr(0, prefix.size()) == prefix; }

bool HVString::StartsWithNoCase(std::u16string_view prefix) const
{
    if (prefix.size() > view().size())
        return false;
    return Left(Clamp32(prefix.size())).CompareNoCase(prefix) == 0;
}

bool HVString::EndsWith(std::u16string_view suffix) const
{
    return suffix.size() <= view().size() && view().substr(view().size() - suffix.size()) == suffix;
}

bool HVString::EndsWithNoCase(std::u16string_view suffix) const
{
    if (suffix.size() > view().size())
        return false;
    return Right(Clamp32(suffix.size())).CompareNoCase(suffix) == 0;
}

int32_t HVString::Find(char16_t ch, int32_t start) const
{
    return Find(std::u16string_view(&ch, 1), start);
}

int32_t HVString::Find(std::u16string_view text, int32_t start) const
{
    if (start < 0 || start > data_->length)
        return npos;
    const size_t at = view().find(text, static_cast<size_t>(start));
    return at == std::u16string_view::npos ? npos : static_cast<int32_t>(at);
}

int32_t HVString::FindNoCase(std::u16string_view text, int32_t start) const
{
    if (start < 0 || start > data_->length)
        return npos;
    const std::u16string_view me = view();
    if (text.size() > me.size())
        return npos;
    for (size_t i = static_cast<size_t>(start); i + text.size() <= me.size(); ++i) {
        size_t k = 0;
        while (k < text.size() && FoldUpper(me[i + k]) == FoldUpper(text[k]))
            ++k;
        if (k == text.size())
            return static_cast<int32_t>(i);
    }
    return npos;
}

int32_t HVString::ReverseFind(char16_t ch) const
{
    const size_t at = view().rfind(ch);
    return at == std::u16string_view::npos ? npos : static_cast<int32_t>(at);
}

int32_t HVString::FindOneOf(std::u16string_view chars, int32_t start) const
{
    if (start < 0 || start > data_->length)
        return npos;
    const size_t at = view().find_first_of(chars, static_cast<size_t>(start));
    return at == std::u16string_view::npos ? npos : static_cast<int32_t>(at);
}

int32_t HVString::Replace(std::u16string_view from, std::u16string_view to)
{
    if (from.empty() || Find(from) == npos)
        return 0;
    HVString result;
    int32_t count = 0;
    size_t pos = 0;
    const std::u16string_view me = view();
    for (size_t at; (at = me.find(from, pos)) != std::u16string_view::npos; pos = at + from.size()) {
        result.Append(me.substr(pos, at - pos));
        result.Append(to);
        ++count;
    }
    result.Append(me.substr(pos));
    *this = std::move(result);
    return count;
}

int32_t HVString::Replace(char16_t from, char16_t to)
{
    if (Find(from) == npos || !PrepareWrite(data_->length))
        return 0;
    int32_t count = 0;
    char16_t* chars = data_->Chars();
    for (int32_t i = 0; i < data_->length; ++i) {
        if (chars[i] == from) {
            chars[i] = to;
            ++count;
        }
    }
    return count;
}

HVString HVString::Mid(int32_t start, int32_t count) const
{
    start = std::clamp(start, 0, data_->length);
    const int32_t available = data_->length - start;
    if (count < 0 || count > available)
        count = available;
    if (start == 0 && count == data_->length)
        return *this;
    return HVString(data_->Chars() + start, count);
}

HVString HVString::Left(int32_t count) const { return Mid(0, std::max(count, 0)); }

HVString HVString::Right(int32_t count) const
{
    count = std::clamp(count, 0, data_->length);
    return Mid(data_->length - count, count);
}

HVString& HVString::Trim() { return TrimRight().TrimLeft(); }

HVString& HVString::TrimLeft()
{
    int32_t i = 0;
    while (i < data_->length && IsBlank(data_->Chars()[i]))
        ++i;
    if (i > 0)
        Delete(0, i);
    return *this;
}

HVString& HVString::TrimRight()
{
    int32_t n = data_->length;
    while (n > 0 && IsBlank(data_->Chars()[n - 1]))
        --n;
    Truncate(n);
    return *this;
}

HVString& HVString::Trim(std::u16string_view chars) { return TrimRight(chars).TrimLeft(chars); }

HVString& HVString::TrimLeft(std::u16string_view chars)
{
    int32_t i = 0;
    while (i < data_->length && chars.find(data_->Chars()[i]) != std::u16string_view::npos)
        ++i;
    if (i > 0)
        Delete(0, i);
    return *this;
}

HVString& HVString::TrimRight(std::u16string_view chars)
{
    int32_t n = data_->length;
    while (n > 0 && chars.find(data_->Chars()[n - 1]) != std::u16string_view::npos)
        --n;
    Truncate(n);
    return *this;
}

HVString& HVString::MakeUpper()
{
    if (!IsEmpty() && PrepareWrite(data_->length))
        for (int32_t i = 0; i < data_->length; ++i)
            data_->Chars()[i] = FoldUpper(data_->Chars()[i]);
    return *this;
}

HVString& HVString::MakeLower()
{
    if (!IsEmpty() && PrepareWrite(data_->length))
        for (int32_t i = 0; i < data_->length; ++i)
            data_->Chars()[i] = FoldLower(data_->Chars()[i]);
    return *this;
}

char16_t* HVString::GetBuffer(int32_t minCapacity)
{
    // PrepareWrite also moves a string off the shared empty buffer, which must never be written.
    if (!PrepareWrite(std::max(minCapacity, 0)))
        return nullptr;
    data_->refs.store(HVStringData::kLockedRefs, std::memory_order_relaxed);
    return data_->Chars();
}

void HVString::ReleaseBuffer(int32_t newLength)
{
    if (data_->IsStatic())
        return;
    if (data_->IsLocked())
        data_->refs.store(1, std::memory_order_release);
    if (newLength < 0) {
        newLength = 0;
        while (newLength < data_->capacity && data_->Chars()[newLength])
            ++newLength;
    }
    SetLengthInternal(std::min(newLength, data_->capacity));
}

void HVString::Preallocate(int32_t capacity)
{
    // An empty string keeps the shared empty buffer, so only a string with characters can
    // reserve room ahead.
    if (!IsEmpty() && capacity > data_->length)
        PrepareWrite(capacity);
}

HVString HVString::FromUtf8(std::string_view utf8)
{
    HVString out;
    char16_t* buffer = out.GetBuffer(Clamp32(utf8.size()) + 1);
    if (!buffer)
        return out;
    int32_t n = 0;
    const auto* s = reinterpret_cast<const unsigned char*>(utf8.data());
    const size_t len = utf8.size();
    size_t i = 0;
    while (i < len) {
        uint32_t c = s[i];
        int extra = 0;
        uint32_t min = 0;
        if (c < 0x80) {
            extra = 0;
        } else if ((c & 0xE0) == 0xC0) {
            extra = 1, c &= 0x1F, min = 0x80;
        } else if ((c & 0xF0) == 0xE0) {
            extra = 2, c &= 0x0F, min = 0x800;
        } else if ((c & 0xF8) == 0xF0) {
            extra = 3, c &= 0x07, min = 0x10000;
        } else {
            buffer[n++] = 0xFFFD;
            ++i;
            continue;
        }
        size_t k = 1;
        for (; k <= static_cast<size_t>(extra) && i + k < len && (s[i + k] & 0xC0) == 0x80; ++k)
            c = (c << 6) | (s[i + k] & 0x3F);
        if (k != static_cast<size_t>(extra) + 1 || c < min || c > 0x10FFFF || (c >= 0xD800 && c <= 0xDFFF)) {
            buffer[n++] = 0xFFFD;
            i += k;   // skip the lead byte and the continuation bytes that were read
            continue;
        }
        i += k;
        if (c >= 0x10000) {
            c -= 0x10000;
            buffer[n++] = static_cast<char16_t>(0xD800 + (c >> 10));
            buffer[n++] = static_cast<char16_t>(0xDC00 + (c & 0x3FF));
        } else {
            buffer[n++] = static_cast<char16_t>(c);
        }
    }
    out.ReleaseBuffer(n);
    return out;
}

std::string HVString::ToUtf8() const
{
    std::string out;
    out.reserve(static_cast<size_t>(data_->length) + 8);
    const char16_t* s = data_->Chars();
    for (int32_t i = 0; i < data_->length; ++i) {
        uint32_t c = s[i];
        if (c >= 0xD800 && c <= 0xDBFF && i + 1 < data_->length && s[i + 1] >= 0xDC00 && s[i + 1] <= 0xDFFF) {
            c = 0x10000 + ((c - 0xD800) << 10) + (s[i + 1] - 0xDC00);
            ++i;
        } else if (c >= 0xD800 && c <= 0xDFFF) {
            c = 0xFFFD;   // a lone surrogate has no UTF-8 form
        }
        if (c < 0x80) {
            out.push_back(static_cast<char>(c));
        } else if (c < 0x800) {
            out.push_back(static_cast<char>(0xC0 | (c >> 6)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else if (c < 0x10000) {
            out.push_back(static_cast<char>(0xE0 | (c >> 12)));
            out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        } else {
            out.push_back(static_cast<char>(0xF0 | (c >> 18)));
            out.push_back(static_cast<char>(0x80 | ((c >> 12) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | ((c >> 6) & 0x3F)));
            out.push_back(static_cast<char>(0x80 | (c & 0x3F)));
        }
    }
    return out;
}

HVString operator+(const HVString& a, std::u16string_view b)
{
    HVString r(a);
    r.Append(b);
    return r;
}
HVString operator+(std::u16string_view a, const HVString& b)
{
    HVString r(a);
    r.Append(b.view());
    return r;
}
HVString operator+(const HVString& a, const HVString& b) { return a + b.view(); }
HVString operator+(const HVString& a, const char16_t* b) { return a + std::u16string_view(b ? b : u""); }
HVString operator+(const char16_t* a, const HVString& b) { return std::u16string_view(a ? a : u"") + b; }
HVString operator+(const HVString& a, char16_t b) { return a + std::u16string_view(&b, 1); }
