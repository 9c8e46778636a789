#pragma once

#include "foundation/HVString.h"

// What the installer needs to know of an address before it fetches from it.
class HVUrl
{
public:
    // "http://", "https://" or "ftp://", in any case: something to download, not a path.
    static bool IsDownload(const HVString& location);
    // "https://": the server proves who it is and nobody on the way can change the bytes.
    static bool IsSecure(const HVString& url);
    // A redirect may be followed unless it leaves https for an address anyone on the way
    // could answer for (http, ftp, anything else).
    static bool MayRedirect(const HVString& from, const HVString& to);
    // The last part of the address's path, without query or fragment ("" for "http://host/").
    static HVString FileName(const HVString& url);
};
