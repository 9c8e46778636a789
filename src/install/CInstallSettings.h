#pragma once

#include "foundation/HVString.h"
#include "product/HVInstallDescription.h"

#include <functional>
#include <string_view>

// The "Settings" of Install.xml that start-up applies to the install options: a support folder,
// permission to downgrade and a bundled media folder. They count only when the root element is
// "HVIC" with a "version" of at least 1.0; anything else (a missing file too) leaves every
// result at its default without a message.
//
// Folder values are relative to the folder of Install.xml (an absolute one is taken as it is),
// made absolute and normalised: "." and ".." resolved, backslash separators, a backslash at the
// end. A folder is kept only if it exists, which the caller decides through `folderExists`: the
// real file system on Windows, a fake in tests.
class CInstallSettings
{
public:
    using FolderExists = std::function<bool(const HVString& folder)>;

    static CInstallSettings Read(const HVInstallDescription& description, const HVString& installXmlPath,
                                 const FolderExists& folderExists);
    // Loads the description first; a file that can't be read gives the defaults.
    static CInstallSettings Read(const HVString& installXmlPath, const FolderExists& folderExists);

    // Whether the file had the root and version that make its settings count.
    bool Applies() const { return applies_; }
    // Empty when the support folder stays as it was.
    const HVString& GetSupportFolder() const { return supportFolder_; }
    bool GetAllowDowngrade() const { return allowDowngrade_; }
    // Empty when no existing bundled media folder is named.
    const HVString& GetBundledMediaFolder() const { return bundledMediaFolder_; }

    // The folder named by `value` relative to the folder that holds `installXmlPath`; empty for
    // an empty value.
    static HVString ResolveFolder(const HVString& installXmlPath, std::u16string_view value);
    // "." and ".." resolved (never above the root), "/" turned into "\", repeated separators
    // merged, a "\" at the end. Roots kept: "C:\", "\\server\share\", "\\?\C:\", "\".
    static HVString NormalizeFolder(std::u16string_view path);
    // A number (digits, optionally a fraction) of at least 1.0.
    static bool IsSupportedVersion(std::u16string_view version);

private:
    bool applies_ = false;
    HVString supportFolder_;
    bool allowDowngrade_ = false;
    HVString bundledMediaFolder_;
};
