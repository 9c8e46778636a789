#include "foundation/HVUrl.h"

#include <gtest/gtest.h>

#include <tuple>

TEST(HVUrlTest, WhatIsDownloadedFromWhereAndWhichRedirectsAreFollowed)
{
    const struct { const char16_t* url; bool download, secure; const char16_t* fileName; } addresses[] = {
        {u"https://host/a/Skin.lwp?x=1#top", true, true, u"Skin.lwp"}, {u"HTTPS://host/", true, true, u""},
        {u"http://host", true, false, u""}, {u"ftp://host/p/Pack.lwp", true, false, u"Pack.lwp"},
        {u"C:\\Packages\\http.lwp", false, false, u""}, {u"https:relative.lwp", false, false, u""},
    };
    for (const auto& a : addresses) {
        EXPECT_EQ(HVUrl::IsDownload(a.url), a.download) << HVString(a.url).ToUtf8();
        EXPECT_EQ(HVUrl::IsSecure(a.url), a.secure) << HVString(a.url).ToUtf8();
        EXPECT_EQ(HVUrl::FileName(a.url), a.fileName) << HVString(a.url).ToUtf8();
    }
    for (const auto& [from, to, follow] : {std::tuple{u"https://a/x", u"https://b/x", true}, {u"https://a/x", u"http://a/x", false},
                                           {u"https://a/x", u"ftp://a/x", false}, {u"https://a/x", u"file:///C:/x", false},
                                           {u"http://a/x", u"https://a/x", true}, {u"http://a/x", u"http://b/x", true}})
        EXPECT_EQ(HVUrl::MayRedirect(from, to), follow) << HVString(to).ToUtf8();
}
