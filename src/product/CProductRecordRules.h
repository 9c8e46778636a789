#pragma once

#include "foundation/HVString.h"

#include <cstdint>
#include <vector>

// The decisions behind the product's registry records that need no registry: how an
// installation's record is named, which earlier versions are looked for, which library paths
// are rewritten and how, what the cleaning step removes, and the text forms of what is noted.
class CProductRecordRules
{
public:
    // The installations record and the uninstall entry of an ordinary install are both named
    // after the major version ("Sonora 32"): installing again, or a later build of the same
    // major version, finds and updates the same record. A portable copy is named after its
    // folder ("Sonora 32 Portable 1A2B3C4D", a hash of the folder without regard to case), so
    // that it never takes the place of the machine's installation and a copy installed again
    // into the same folder keeps its record.
    static HVString InstallationKeyName(const HVString& majorVersionName, bool portable, const HVString& installFolder);

    // The registry roots of earlier major versions, newest first: "Software\Halvard\Sonora 31"
    // down to "Software\Halvard\Sonora 1".
    static std::vector<HVString> EarlierVersionRoots(const HVString& displayName, int32_t currentMajorVersion);

    // "LibraryPath" and "File Location - Image File Location".
    static bool IsLibraryPathSetting(const HVString& name);
    // A path inside one of the earlier installation's data folders ("Data", "Skins", ...)
    // becomes "[App Data Path]" followed by the rest of it from the data folder on, for
    // example "C:\Program Files\Halvard\Sonora 31\Data\Library\" becomes
    // "[App Data Path]Data\Library\". Any other path is returned unchanged; so is everything
    // when the earlier folder is unknown.
    static HVString RewriteLibraryPath(const HVString& path, const HVString& earlierInstallFolder);
    static const std::vector<HVString>& DataFolders();

    // Below the product's registry root: records of plug-ins the product no longer has.
    static const std::vector<HVString>& RetiredKeys();
    // In "Properties": settings the product no longer reads.
    static const std::vector<HVString>& RetiredSettings();
    static bool IsRetiredSetting(const HVString& name);

    // Registry data in the form of a ".reg" file, the form in which the change log keeps what
    // a value held before it was changed: "text" (backslash and quote escaped) for REG_SZ,
    // dword:0000002a for REG_DWORD, hex(<type>):2a,00,... for every other type.
    static HVString DescribeData(uint32_t type, const std::vector<uint8_t>& data);
    // The way back, for restoring what a value held; false for text not in that form.
    static bool ReadData(const HVString& text, uint32_t& type, std::vector<uint8_t>& data);
    // "yyyymmdd".
    static HVString DateText(int32_t year, int32_t month, int32_t day);
    // Kilobytes, rounded up, at most 0xFFFFFFFF.
    static uint32_t SizeInKilobytes(uint64_t bytes);
};
