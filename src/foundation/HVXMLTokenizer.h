#pragma once

#include "foundation/HVXMLCharTable.h"

#include <bit>
#include <cstdint>

#if defined(__SSE2__) || defined(_M_X64) || defined(_M_AMD64)
#include <emmintrin.h>
#define HV_XML_SSE2 1
#endif

// Reads one node of XML text at a time. The parser uses it for everything but start and end
// tags (which it reads inline, being the hot path), and the on-demand readers use it to find
// the non-element nodes again: both must cut the text at the same places, so there is only
// this one definition of where a node ends.
//
// All offsets are char16_t indexes; `n` is the text length. Scans never read at or past n.
class HVXMLTokenizer
{
public:
    // Node kinds; also used as masks.
    enum Kind : int
    {
        kElement = 1,
        kText = 2,
        kWhitespace = 4,
        kCData = 8,
        kProcessingInstruction = 16,
        kComment = 32,
        kDocumentType = 64,
        kLoneEndTag = 128,
    };

    enum class Problem { kUnterminated, kIncorrect };

    struct Token
    {
        int kind;
        int32_t length;
    };

    // Character classes of the ASCII range; everything above is a name character.
    enum Class : uint8_t
    {
        kSpace = HVXMLCharTable::kSpace,
        kTagNameEnd = HVXMLCharTable::kTagNameEnd,
        kAttrNameEnd = HVXMLCharTable::kAttrNameEnd,
        kNotNameStart = HVXMLCharTable::kNotNameStart,
        kPathNameEnd = HVXMLCharTable::kPathNameEnd,
        kValueEnd = HVXMLCharTable::kValueEnd,
    };

    static constexpr uint8_t ClassOf(char16_t c) { return c < 128 ? kHVXMLCharTable.bits[c] : 0; }
    static constexpr bool IsSpace(char16_t c) { return (ClassOf(c) & kSpace) != 0; }
    static constexpr bool IsTagNameEnd(char16_t c) { return (ClassOf(c) & kTagNameEnd) != 0; }
    static constexpr bool IsAttrNameEnd(char16_t c) { return (ClassOf(c) & kAttrNameEnd) != 0; }
    static constexpr bool IsNameStart(char16_t c) { return (ClassOf(c) & kNotNameStart) == 0; }
    static constexpr bool IsPathNameEnd(char16_t c) { return (ClassOf(c) & kPathNameEnd) != 0; }
    static constexpr bool IsValueEnd(char16_t c) { return (ClassOf(c) & kValueEnd) != 0; }

    // The first index in [from, end) holding c, or end.
    static int32_t FindChar(const char16_t* s, int32_t from, int32_t end, char16_t c)
    {
        int32_t i = from;
#ifdef HV_XML_SSE2
        const __m128i needle = _mm_set1_epi16(static_cast<short>(c));
        for (; i + 16 <= end; i += 16) {
            const unsigned mask = Mask16(s + i, [&](__m128i v) { return _mm_cmpeq_epi16(v, needle); });
            if (mask)
                return i + std::countr_zero(mask);
        }
        if (i + 8 <= end) {
            const __m128i v = _mm_loadu_si128(reinterpret_cast<const __m128i*>(s + i));
            const unsigned mask = static_cast<unsigned>(_mm_movemask_epi8(_mm_cmpeq_epi16(v, needle)));
            if (mask)
                return i + (std::countr_zero(mask) >> 1);
            i += 8;
        }
#endif
        for (; i < end; ++i)
            if (s[i] == c)
                return i;
        return end;
    }

    // The first index in [from, end) holding a, b or c, or end.
    static int32_t FindAny3(const char16_t* s, int32_t from, int32_t end, char16_t a, char16_t b, char16_t c)
    {
        int32_t i = from;
#ifdef HV_XML_SSE2
        const __m128i na = _mm_set1_epi16(static_cast<short>(a));
        const __m128i nb = _mm_set1_epi16(static_cast<short>(b));
        const __m128i nc = _mm_set1_epi16(static_cast<short>(c));
        for (; i + 16 <= end; i += 16) {
            const unsigned mask = Mask16(s + i, [&](__m128i v) {
                return _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi16(v, na), _mm_cmpeq_epi16(v, nb)),
                                    _mm_cmpeq_epi16(v, nc));
            });
            if (mask)
                return i + std::countr_zero(mask);
        }
#endif
        for (; i < end; ++i)
            if (s[i] == a || s[i] == b || s[i] == c)
                return i;
        return end;
    }

    // The index of the first character of `a b c` in [from, end), or end.
    static int32_t FindTerminator(const char16_t* s, int32_t from, int32_t end, char16_t a, char16_t b, char16_t c)
    {
        for (int32_t i = FindChar(s, from, end, c); i < end; i = FindChar(s, i + 1, end, c)) {
            if (i - 2 >= from && s[i - 1] == b && s[i - 2] == a)
                return i - 2;
        }
        return end;
    }
    static int32_t FindTerminator(const char16_t* s, int32_t from, int32_t end, char16_t a, char16_t b)
    {
        for (int32_t i = FindChar(s, from, end, b); i < end; i = FindChar(s, i + 1, end, b)) {
            if (i - 1 >= from && s[i - 1] == a)
                return i - 1;
        }
        return end;
    }

    // The ">" that ends a start tag, searching from `from` (after the "<" and the name): the
    // first one outside a quoted value. Returns -1 when the text ends first.
    static int32_t FindTagEnd(const char16_t* s, int32_t from, int32_t n)
    {
        int32_t i = from;
        char16_t quote = 0;
#ifdef HV_XML_SSE2
        // Sixteen characters at a time, every quote and ">" among them taken from one mask.
        const __m128i gt = _mm_set1_epi16(u'>');
        const __m128i dq = _mm_set1_epi16(u'"');
        const __m128i sq = _mm_set1_epi16(u'\'');
        for (; i + 16 <= n; i += 16) {
            unsigned mask = Mask16(s + i, [&](__m128i v) {
                return _mm_or_si128(_mm_or_si128(_mm_cmpeq_epi16(v, gt), _mm_cmpeq_epi16(v, dq)),
                                    _mm_cmpeq_epi16(v, sq));
            });
            for (; mask; mask &= mask - 1) {
                const int32_t at = i + std::countr_zero(mask);
                const char16_t c = s[at];
                if (quote) {
                    if (c == quote)
                        quote = 0;
                } else if (c == u'>') {
                    return at;
                } else {
                    quote = c;
                }
            }
        }
#endif
        for (; i < n; ++i) {
            const char16_t c = s[i];
            if (quote) {
                if (c == quote)
                    quote = 0;
            } else if (c == u'>') {
                return i;
            } else if (c == u'"' || c == u'\'') {
                quote = c;
            }
        }
        return -1;
    }

    // Reads the node at `pos` (pos < n). A construct that can't be read becomes text: up to
    // the next "<" for a bad character after "<" (the scan goes on there), up to the end for an
    // unterminated one. Problems go to onError(Problem, construct word, offset).
    template <class OnError>
    static Token Next(const char16_t* s, int32_t n, int32_t pos, OnError&& onError)
    {
        if (s[pos] != u'<') {
            const int32_t end = FindChar(s, pos, n, u'<');
            int32_t i = pos;
            while (i < end && IsSpace(s[i]))
                ++i;
            return {i == end ? kWhitespace : kText, end - pos};
        }
        auto unterminated = [&](const char16_t* what) {
            onError(Problem::kUnterminated, what, pos);
            return Token{kText, n - pos};
        };
        auto incorrect = [&](const char16_t* what) {
            onError(Problem::kIncorrect, what, pos);
            return Token{kText, FindChar(s, pos + 1, n, u'<') - pos};
        };
        if (pos + 1 >= n)
            return unterminated(u"tag");
        const char16_t c = s[pos + 1];
        if (c == u'/') {
            const int32_t gt = FindChar(s, pos + 2, n, u'>');
            return gt >= n ? unterminated(u"Element end tag") : Token{kLoneEndTag, gt + 1 - pos};
        }
        if (c == u'?') {
            const int32_t at = FindTerminator(s, pos + 2, n, u'?', u'>');
            return at >= n ? unterminated(u"Processing instruction") : Token{kProcessingInstruction, at + 2 - pos};
        }
        if (c == u'!')
            return Declaration(s, n, pos, onError, unterminated, incorrect);
        if (IsNameStart(c)) {
            int32_t i = pos + 1;
            while (i < n && !IsTagNameEnd(s[i]))
                ++i;
            const int32_t gt = FindTagEnd(s, i, n);
            return gt < 0 ? unterminated(u"Element tag") : Token{kElement, gt + 1 - pos};
        }
        return incorrect(u"tag name character");
    }

private:
#ifdef HV_XML_SSE2
    // One bit per character for the sixteen characters at s: where `test` set the lane.
    template <class Test>
    static unsigned Mask16(const char16_t* s, Test test)
    {
        const __m128i lo = test(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s)));
        const __m128i hi = test(_mm_loadu_si128(reinterpret_cast<const __m128i*>(s + 8)));
        return static_cast<unsigned>(_mm_movemask_epi8(_mm_packs_epi16(lo, hi)));
    }
#endif

    // "<!" constructs: comments, CDATA sections and document types.
    template <class OnError, class Unterminated, class Incorrect>
    static Token Declaration(const char16_t* s, int32_t n, int32_t pos, OnError& onError,
                             Unterminated& unterminated, Incorrect& incorrect)
    {
        if (pos + 2 >= n)
            return unterminated(u"tag");
        const char16_t c = s[pos + 2];
        if (c == u'-') {
            if (pos + 3 >= n)
                return unterminated(u"Comment");
            if (s[pos + 3] != u'-')
                return incorrect(u"comment tag");
            const int32_t at = FindTerminator(s, pos + 4, n, u'-', u'-', u'>');
            return at >= n ? unterminated(u"Comment") : Token{kComment, at + 3 - pos};
        }
        if (c == u'[') {
            if (pos + 3 >= n)
                return unterminated(u"tag");
            if (s[pos + 3] != u'C')
                return incorrect(u"tag");
            const int32_t at = FindTerminator(s, pos + 3, n, u']', u']', u'>');
            return at >= n ? unterminated(u"CDATA Section") : Token{kCData, at + 3 - pos};
        }
        if (c != u'D')
            return incorrect(u"! tag");
        // A document type ends at the first ">" outside the declarations of its internal
        // subset; those must be element, attribute-list, entity or notation declarations.
        int32_t i = pos + 3;
        for (;;) {
            i = FindAny3(s, i, n, u'>', u'<', u'>');
            if (i >= n)
                return unterminated(u"Doctype");
            if (s[i] == u'>')
                return Token{kDocumentType, i + 1 - pos};
            if (i + 2 >= n)
                return unterminated(u"Doctype");
            const char16_t k = s[i + 2];
            if (s[i + 1] == u'!' && (k == u'E' || k == u'A' || k == u'N')) {
                i = FindChar(s, i + 3, n, u'>');
                if (i >= n)
                    return unterminated(u"Doctype");
                ++i;
            } else {
                onError(Problem::kIncorrect, u"! tag", i);
                ++i;
            }
        }
    }
};
