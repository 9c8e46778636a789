#pragma once

#include "foundation/HVString.h"
#include "foundation/HVZipReader.h"

#include <cstdint>
#include <vector>

// Unpacks an opened archive into a folder. Every member is written whole to a temporary name
// beside its place and renamed when complete, so a file in the folder is never half-written.
// Before the first byte is written the drive is asked whether everything fits.
class HVZipUnpacker
{
public:
    // Reads a whole archive file into memory, refusing files over maxBytes.
    static bool ReadArchive(const HVString& path, std::vector<uint8_t>& bytes, uint64_t maxBytes = 1024ull << 20);
    // keepFolders: members keep their folders below `folder`; otherwise each goes to `folder`
    // under its file name alone. False (and the reason in `error`) at the first failure; what
    // was written so far stays for the caller, who owns the folder, to remove.
    static bool Unpack(HVZipReader& reader, const HVString& folder, bool keepFolders, HVString& error);
};
