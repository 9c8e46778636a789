#pragma once

#include "foundation/HVString.h"
#include "integration/CPackageDescription.h"

#include <windows.h>

#include <cstdint>
#include <vector>

class CInstallChangeLog;
struct CInstallContext;
class HVInstallDescription;
class IInstallProgress;
class HVZipReader;

// Installs one package: a zip archive (".lwp", skins also ".lws") with a description document
// (CPackageDescription) among its root files. The archive is checked whole before anything is
// asked or written (HVZipReader), and so is every name the description gives that becomes a
// path (its name, a file, a Param): one that could lead outside the folder its word writes to
// refuses the package with "Failed to unzip file '<name>'.". The user confirms; the package is
// unpacked into a folder of its own under the temporary folder; the actions are walked once
// without doing anything, to refuse the package before its first change when a target lies
// elsewhere than its text says (a junction, a short alias: HVContainedPath); then the
// package-level actions run in their fixed order, then each file's commands in document order;
// the temporary folder goes unless the package keeps it.
// A file that is no archive but a module is installed as a plug-in of whatever kind it is; an
// archive without a description is a plain one, unpacked into the program folder as it lies.
// Failures are told in "Information" boxes and the result is false; the user's "No" at the
// confirmation is no failure.
class CInstallPackage
{
public:
    struct Context
    {
        CInstallChangeLog& changes;
        HVString installFolder;     // [PROGRAMPATH], with a backslash
        HVString productName;       // the %s of the messages
        HVString nameWithVersion;   // [NameWithVersion]
        HVString launcherPath;      // started by START_SN and RESTART_SN
        HWND owner = nullptr;
        // False for silent runs: what the distributor named is installed without asking, and
        // failures go to the log only.
        bool interactive = true;
        IInstallProgress* progress = nullptr;
        // The pins of packages fetched from an address ("/*/Installer/Downloads/<file name>/
        // SHA256"); without a description, or a pin, a package is fetched over https only.
        const HVInstallDescription* description = nullptr;
    };

    explicit CInstallPackage(const Context& context) : context_(context) {}

    // A file path, or an "http://", "https://" or "ftp://" address that is downloaded first.
    bool Install(const HVString& location);

    // The packages the install description names ("/*/Installer/Packages": ";"-separated, each
    // a path relative to the setup folder, a full path or an address), for the plug-in step. A
    // package that fails doesn't stop the next one; the locations that failed come back.
    static std::vector<HVString> InstallListed(const CInstallContext& context);

    // The folder a COPY_ word puts files in; empty for a word that is no copy.
    HVString CopyFolder(const HVString& word) const;
    // Where a skin goes: "<program>Skins\" (mini) or "<program>FullSkins\" (full), then
    // "Lounge View\" when its "main.xml" says LWFS, else "Standard View\", then the skin's name.
    HVString SkinFolder(bool full, const HVString& mainXml, const HVString& skinName) const;

private:
    // location: what the user named (the address of a downloaded package), for the messages.
    bool InstallFile(const HVString& path, const HVString& location);
    bool Fail(const HVString& text);
    bool FailPackage(const HVString& reason, const HVString& location);
    // The first root ".xml" that is a description; overBudget when the root files to look
    // through pass what may be unpacked before the question.
    bool ReadDescription(HVZipReader& reader, CPackageDescription& description, bool& overBudget);
    bool Confirm(const HVString& name);
    // The package-level actions, then (unless NONE) each file's commands.
    bool RunActions(const CPackageDescription& description, const HVString& unpacked, HVZipReader& reader,
                    const HVString& packageName, bool keepFolders);
    bool RunPackageActions(const CPackageDescription& description, const HVString& unpacked, HVZipReader& reader,
                           const HVString& packageName);
    bool RunFileCommands(const CPackageDescription::FileEntry& entry, const HVString& unpacked, bool keepFolders);
    bool ApplyRegistryFile(const HVString& path);
    // The names the description gives, as text: before the user is asked.
    bool CheckNames(const CPackageDescription& description, const HVString& packageName);
    // A Param naming a folder: inside the program folder, every part of it a plain name.
    bool IsProgramFolderPath(const HVString& path, bool allowTheFolderItself) const;
    // Notes the first name that refused the package; false.
    bool Refuse(const HVString& name);
    // In checking_, only whether the target may be written; otherwise the copy.
    bool CopyEntry(const HVString& source, const HVString& targetFolder, bool move);
    // The unpacked package without the description and the files that have commands of their
    // own: what a skin or a set of track information templates consists of.
    bool CopyContent(const HVString& unpacked, const HVString& targetFolder);
    void TellMedia(const HVString& unpacked, bool preview);
    void Status(const char16_t* text);
    HVString Expand(const HVString& text) const;

    Context context_;
    std::vector<HVString> ownFiles_;  // the description's and the commanded files' names
    // The walk before the changes: every target checked, nothing written, nothing run.
    bool checking_ = false;
    HVString refused_;
};
