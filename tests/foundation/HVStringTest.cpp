#include "foundation/HVDefaultStringManager.h"
#include "foundation/HVString.h"

#include <gtest/gtest.h>

#include <thread>
#include <vector>

namespace
{
int32_t Refs(const HVString& s) { return s.GetData()->refs.load(); }

TEST(HVStringTest, EmptyStringsShareTheManagersStaticBuffer)
{
    HVString a, b(u""), c(u"x"), d(u"abc"), e;
    c.Empty();
    d.Delete(0, 3);
    e.GetBuffer(20);
    e.ReleaseBuffer(0);
    HVStringData* nil = HVDefaultStringManager::Instance().GetNil();
    for (const HVString* s : {&a, &b, &c, &d, &e}) {
        EXPECT_EQ(s->GetData(), nil);
        EXPECT_EQ(Refs(*s), HVStringData::kStaticRefs);
        EXPECT_EQ(s->c_str()[0], u'\0');
    }
}

TEST(HVStringTest, CopiesShareUntilOneWritesButNeverALockedBuffer)
{
    HVString a(u"shared text");
    HVString b(a);
    EXPECT_EQ(a.GetData(), b.GetData());
    EXPECT_EQ(Refs(a), 2);
    b.SetAt(0, u'S');
    EXPECT_NE(a.GetData(), b.GetData());
    EXPECT_EQ(a, u"shared text");
    EXPECT_EQ(b, u"Shared text");
    EXPECT_EQ(Refs(a), 1);
    EXPECT_EQ(Refs(b), 1);

    // A locked buffer is never shared.
    a = u"abc";
    char16_t* p = a.GetBuffer(10);
    ASSERT_NE(p, nullptr);
    EXPECT_EQ(Refs(a), HVStringData::kLockedRefs);
    HVString copy(a);   // copying a locked buffer copies the characters
    EXPECT_NE(copy.GetData(), a.GetData());
    EXPECT_EQ(copy, u"abc");
    p[3] = u'd';
    p[4] = 0;
    a.ReleaseBuffer();
    EXPECT_EQ(a, u"abcd");
    EXPECT_EQ(Refs(a), 1);
    EXPECT_EQ(copy, u"abc");
}

TEST(HVStringTest, SelfReferentialOperations)
{
    HVString s(u"abcdef");
    s = s.Mid(2);
    EXPECT_EQ(s, u"cdef");
    s.Append(s.view());
    EXPECT_EQ(s, u"cdefcdef");
    s += s;
    EXPECT_EQ(s, u"cdefcdefcdefcdef");
    HVString t(s);
    t.Append(t.view().substr(0, 2));
    EXPECT_EQ(t, u"cdefcdefcdefcdefcd");
    EXPECT_EQ(s, u"cdefcdefcdefcdef");
}

TEST(HVStringTest, Format)
{
    const HVString name(u"Sonora");
    const std::pair<const char16_t*, HVString> cases[] = {
        {u"Finish (result: 3) (12 ms)", HVString::Format(u"Finish (result: %d) (%d ms)", 3, int64_t{12})},
        {u"Rights Check (1234567890123)", HVString::Format(u"Rights Check (%I64d)", int64_t{1234567890123})},
        {u"C:\\Program Files\\Halvard\\Sonora", HVString::Format(u"%sHalvard\\%s", u"C:\\Program Files\\", name)},
        {u"Error 5 deleting existing file: x", HVString::Format(u"Error %d deleting existing file: %s", 5u, "x")},
        {u"-42|   42|42   |00042|+42", HVString::Format(u"%d|%5d|%-5d|%05d|%+d", -42, 42, 42, 42, 42)},
        {u"ff|FF|0xff|17", HVString::Format(u"%x|%X|%#x|%o", 255, 255, 255, 15)},
        {u"100%", HVString::Format(u"%d%%", 100)},
        {u"ab|  abc|ab", HVString::Format(u"%.2s|%5s|%.*s", u"abc", u"abc", 2, u"abc")},
        {u"1.50|2.5e+00", HVString::Format(u"%.2f|%.1e", 1.5, 2.5)},
        {u"x", HVString::Format(u"%c", u'x')},
        {u"missing:", HVString::Format(u"missing:%s")},
        {u"7", HVString::Format(u"%s", 7)},
        {u"%q stays", HVString::Format(u"%q stays")},
        {u"-2147483648", HVString::Format(u"%d", INT32_MIN)},
        {u"18446744073709551615", HVString::Format(u"%u", UINT64_MAX)},
        {u"\u00e9t\u00e9", HVString::Format(u"%s", "\xc3\xa9t\xc3\xa9")},
    };
    for (const auto& [expected, actual] : cases)
        EXPECT_EQ(actual, expected);
}

using Utf8Case = std::pair<std::string, std::u16string>;

TEST(HVStringTest, Utf8RoundTripAndRepair)
{
    const Utf8Case good[] = {
        {"", u""}, {"plain", u"plain"}, {"\xc3\xa9", u"\u00e9"}, {"\xe2\x82\xac", u"\u20ac"}, {"\xf0\x9f\x8e\xb5", u"\U0001F3B5"},
    };
    for (const auto& [utf8, utf16] : good) {
        EXPECT_EQ(HVString::FromUtf8(utf8), utf16);
        EXPECT_EQ(HVString(utf16).ToUtf8(), utf8);
    }
    const Utf8Case bad[] = {
        {"\xff", u"\uFFFD"},
        {"a\xc3", u"a\uFFFD"},                 // truncated sequence
        {"\xc0\xaf", u"\uFFFD"},               // overlong
        {"\xed\xa0\x80", u"\uFFFD"},           // encoded surrogate
        {"\xf4\x90\x80\x80", u"\uFFFD"},       // above U+10FFFF
    };
    for (const auto& [utf8, utf16] : bad)
        EXPECT_EQ(HVString::FromUtf8(utf8), utf16) << utf8;
    const char16_t lone[] = {u'a', 0xD800, u'b', 0};
    EXPECT_EQ(HVString(lone).ToUtf8(), "a\xef\xbf\xbd" "b");
}

TEST(HVStringTest, CaseInsensitiveComparison)
{
    const struct { const char16_t* a; const char16_t* b; int expected; } cases[] = {
        {u"C:\\Program Files", u"c:\\PROGRAM FILES", 0}, {u"\u00e9cole", u"\u00c9COLE", 0},
        {u"\u0434\u043e\u043c", u"\u0414\u041e\u041c", 0}, {u"abc", u"abd", -1}, {u"abc", u"ab", 1}, {u"", u"", 0},
    };
    for (const auto& c : cases)
        EXPECT_EQ(HVString(c.a).CompareNoCase(c.b), c.expected) << HVString(c.a).ToUtf8();
}

TEST(HVStringTest, SearchAndEdit)
{
    HVString s(u"  Install Wizard  ");
    s.Trim();
    EXPECT_EQ(s, u"Install Wizard");
    for (const auto& [found, at] : {std::pair{s.Find(u"Wiz"), 8}, {s.FindNoCase(u"WIZ"), 8}, {s.Find(u"wiz"), HVString::npos},
                                    {s.ReverseFind(u'a'), 11}, {s.FindOneOf(u"zW"), 8}})
        EXPECT_EQ(found, at);
    for (const auto& [part, expected] : {std::pair{s.Left(7), u"Install"}, {s.Right(6), u"Wizard"}, {s.Mid(8, 3), u"Wiz"},
                                         {s.Mid(100), u""}})
        EXPECT_EQ(part, expected);
    EXPECT_TRUE(s.StartsWithNoCase(u"INSTALL"));
    EXPECT_TRUE(s.EndsWith(u"ard"));
    HVString r(u"a.b.c");
    EXPECT_EQ(r.Replace(u".", u"::"), 2);
    EXPECT_EQ(r, u"a::b::c");
    EXPECT_EQ(r.Replace(u':', u'-'), 4);
    EXPECT_EQ(r, u"a--b--c");
    r.Insert(1, u"X");
    EXPECT_EQ(r, u"aX--b--c");
    r.MakeUpper();
    EXPECT_EQ(r, u"AX--B--C");
    EXPECT_EQ(u"<" + HVString(u"x") + u">", u"<x>");
}

TEST(HVStringTest, AppendIsAmortisedLinear)
{
    // Growth by a factor reallocates a few dozen times; growth by a fixed step, thousands.
    HVString s;
    int growths = 0;
    for (int i = 0; i < 100000; ++i) {
        const auto before = s.GetData()->capacity;
        s += u'x';
        growths += s.GetData()->capacity != before;
    }
    EXPECT_EQ(s.GetLength(), 100000);
    EXPECT_LE(growths, 64);
}

// Under ThreadSanitizer: unsynchronised counting; under AddressSanitizer: a buffer freed in use.
TEST(HVStringConcurrentTest, CopiesAndReleasesFromManyThreads)
{
    const HVString shared(u"a string shared by every thread of this test");
    constexpr int kThreads = 8;
    constexpr int kRounds = 20000;
    std::vector<std::thread> threads;
    for (int t = 0; t < kThreads; ++t) {
        threads.emplace_back([&shared, t] {
            for (int i = 0; i < kRounds; ++i) {
                HVString copy(shared);
                HVString second = copy;
                if ((i + t) % 7 == 0) {
                    second.SetAt(0, u'A');   // forks a private buffer
                    if (second[0] != u'A' || copy[0] != u'a')
                        std::abort();
                }
                HVString moved(std::move(second));
            }
        });
    }
    for (auto& th : threads)
        th.join();
    EXPECT_EQ(Refs(shared), 1);
    EXPECT_EQ(shared, u"a string shared by every thread of this test");
}
}   // namespace
