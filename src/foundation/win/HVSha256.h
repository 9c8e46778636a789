#pragma once

#include "foundation/HVString.h"

#include <windows.h>

// SHA-256 with the system's own cryptography (BCrypt), so that a download is checked by code
// the system keeps up to date rather than by a copy of our own.
class HVSha256
{
public:
    // The digest of everything `file` holds from its start, as 64 lower-case hex digits; empty
    // when the file can't be read or the algorithm isn't there (logged). Reads through the
    // handle the caller holds, so the bytes hashed are the bytes that handle protects.
    static HVString OfFile(HANDLE file);
    // The same for the file at `path`, opened for reading while others may read it too; empty
    // when there is no such file or it can't be read.
    static HVString OfPath(const HVString& path);
    // Two digests name the same bytes: hex digits compared without regard to case, blanks
    // around the expected one ignored. An empty digest never matches.
    static bool Matches(const HVString& actual, const HVString& expected);
};
