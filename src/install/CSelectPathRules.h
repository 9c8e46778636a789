#pragma once

#include "foundation/HVString.h"

#include <cstdint>
#include <vector>

// The destination page's decisions, apart from its window so that every rule can be driven
// from a table without a machine: which folder to propose, and whether the folder the user
// entered may be left for the install.
//
// What the rules need from the machine comes through ISelectPathMachine. The page (Windows)
// implements it with the real folders, CProtectedFolders, HVFileSystem::MakeDirectoryTree and
// the drive's free space; tests implement it with plain fields.
//
//   CSelectPathRules::ProposalInput in{options.portable, options.earlierInstallationFound,
//                                      options.destinationFolder, installToPath, displayName};
//   HVString proposal = CSelectPathRules::Propose(in, machine);
//   ...
//   CSelectPathResult r = CSelectPathRules::Check(editText, displayName, machine);
//   if (!r.accepted)
//       HVMessageBox::Show(hwnd, r.text, r.title, MB_OK | MB_ICONWARNING);   // page stays
//   else
//       options.destinationFolder = r.folder;
//
// Titles and texts of a refusal are translated (HVTranslator) part by part before the
// display name is filled in, so they are ready to show.
class ISelectPathMachine
{
public:
    // Folder paths may come with or without their trailing backslash.
    virtual HVString WindowsFolder() const = 0;
    virtual HVString ProgramFilesFolder() const = 0;
    // Folders of other programs (CProtectedFolders); asked only when checks 1 to 4 passed.
    virtual std::vector<HVString> ProtectedFolders() const = 0;
    // "Install Directory" under the product's "Installer" key; empty when absent.
    virtual HVString RememberedFolder() const = 0;
    // The folder the product identity reports for an earlier installation; empty when none.
    virtual HVString EarlierInstallationFolder() const = 0;
    // Creates the folder with all its missing parents; true when it exists afterwards. Only
    // ever called with an absolute folder path ending in a backslash.
    virtual bool MakeDirectoryTree(const HVString& folder) = 0;
    // Free bytes available to the user on the folder's drive; false when they can't be read.
    virtual bool FreeBytes(const HVString& folder, uint64_t& bytes) const = 0;

protected:
    ~ISelectPathMachine() = default;
};

struct CSelectPathResult
{
    bool accepted = false;
    // 0 when accepted, otherwise the number of the refusing check: 1 empty, 2 drive root,
    // 3 Windows folder, 4 the Program Files folder itself, 5 a protected folder, 6 can't be
    // created, 7 less than 30 MiB free.
    int check = 0;
    // The entered folder as normalised (with its trailing backslash); the destination when
    // accepted.
    HVString folder;
    // The refusal's message box, translated and formatted; empty when accepted.
    HVString title;
    HVString text;
};

class CSelectPathRules
{
public:
    // Check 7 measures whole MiB: (free bytes >> 20) < kMinimumFreeMiB refuses.
    static constexpr uint64_t kMinimumFreeMiB = 30;

    struct ProposalInput
    {
        bool portable = false;
        bool earlierInstallationFound = false;
        HVString currentDestination; // InstallOptions::destinationFolder as it stands
        HVString installToPath;      // "/*/Product/InstallToPath"
        HVString displayName;        // the product's display name
        HVString answeredFolder;     // an answer file's folder: what the user typed last time
    };

    // The folder to show on the page. Portable: empty (the user picks a removable drive), or
    // the folder the user typed in the run an answer file recorded.
    // Otherwise the first that isn't empty of: the current destination, the earlier
    // installation's folder (only when one was found), the remembered folder unless it
    // contains "(x86)" (a 32-bit install's folder), InstallToPath, and Program Files +
    // "Halvard\" + display name. A folder from any source but the current destination comes
    // with a trailing backslash.
    static HVString Propose(const ProposalInput& input, const ISelectPathMachine& machine);

    // The leave check: normalises the entered text and runs the seven checks in order; the
    // first that fails decides. Check 6 creates the folder, so a refusal by check 7 leaves
    // that (empty) folder behind. A relative path (including "\folder" and "C:folder") can't
    // be created and is refused by check 6 without asking the machine.
    static CSelectPathResult Check(const HVString& entered, const HVString& displayName, ISelectPathMachine& machine);

    // The entered text as a folder path: blanks around it trimmed, slashes taken as
    // separators, "." and ".." resolved, cleaned (no component ending in a space or point,
    // invalid characters as "_"), with a trailing backslash. Empty stays empty; a relative
    // path is only resolved, since check 6 refuses it whatever it holds.
    static HVString NormalizeFolder(const HVString& entered);
};
