#include "foundation/HVUrl.h"

bool HVUrl::IsDownload(const HVString& location)
{
    return location.StartsWithNoCase(u"http://") || IsSecure(location) || location.StartsWithNoCase(u"ftp://");
}

bool HVUrl::IsSecure(const HVString& url)
{
    return url.StartsWithNoCase(u"https://");
}

bool HVUrl::MayRedirect(const HVString& from, const HVString& to)
{
    return !IsSecure(from) || IsSecure(to);
}

HVString HVUrl::FileName(const HVString& url)
{
    const int32_t end = url.FindOneOf(u"?#");
    const HVString path = end >= 0 ? url.Left(end) : url;
    const int32_t scheme = path.Find(u"://");
    const int32_t slash = path.ReverseFind(u'/');
    return slash < 0 || slash < scheme + 3 ? HVString() : path.Mid(slash + 1);
}
