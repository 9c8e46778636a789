#include "install/CSelectPathRules.h"

#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"

namespace
{
constexpr const char16_t* kInvalidTitle = u"Invalid Destination Folder";
constexpr const char16_t* kEnterNew = u"Please enter a new destination folder.";

// Each part is translated on its own: the parts are what the language files hold, and a
// part shared by several messages is translated once.
HVString Tr(const char16_t* english) { return HVTranslator::Translate(HVString(english)); }

CSelectPathResult Refuse(CSelectPathResult result, int check, const HVString& title, const HVString& text)
{
    result.accepted = false;
    result.check = check;
    result.title = title;
    result.text = text;
    HVLog::Write(HVLog::kInfo, "CSelectPathRules::Check", u"Check %d refused %s", check, result.folder);
    return result;
}

CSelectPathResult RefuseInvalid(CSelectPathResult result, int check, const char16_t* what, const HVString& name)
{
    HVString text = HVString::Format(Tr(what).c_str(), name) + Tr(kEnterNew);
    return Refuse(std::move(result), check, Tr(kInvalidTitle), text);
}

bool StartsWithFolder(const HVString& folder, const HVString& parent)
{
    const HVString prefix = HVFileSystemPath::AddBackslash(parent);
    return !prefix.IsEmpty() && folder.StartsWithNoCase(prefix);
}
}

HVString CSelectPathRules::NormalizeFolder(const HVString& entered)
{
    HVString folder = HVFileSystemPath::NormalizeFolderPath(entered);
    // A relative path is refused anyway; cleaning it would only mangle it (the point rule
    // eats the ".." that resolution has to keep, and "..\..\x" would come out as the network
    // path "\\x"), so it is shown back as entered.
    if (!HVFileSystemPath::IsAbsolute(folder.view()))
        return folder;
    HVFileSystemPath::CleanPath(folder);
    return HVFileSystemPath::AddBackslash(folder);
}

HVString CSelectPathRules::Propose(const ProposalInput& input, const ISelectPathMachine& machine)
{
    if (input.portable)
        return input.answeredFolder;

    // What the user already has on the page stays as it is; a folder from elsewhere is shown
    // as folders are kept, with its trailing backslash.
    if (!input.currentDestination.IsEmpty())
        return input.currentDestination;
    HVString proposal;
    if (input.earlierInstallationFound)
        proposal = machine.EarlierInstallationFolder();
    if (proposal.IsEmpty()) {
        proposal = machine.RememberedFolder();
        if (proposal.FindNoCase(u"(x86)") >= 0)
            proposal.Empty();
    }
    if (proposal.IsEmpty())
        proposal = input.installToPath;
    if (proposal.IsEmpty())
        proposal = HVString::Format(u"%sHalvard\\%s", HVFileSystemPath::AddBackslash(machine.ProgramFilesFolder()),
                                    input.displayName);
    return HVFileSystemPath::AddBackslash(proposal);
}

CSelectPathResult CSelectPathRules::Check(const HVString& entered, const HVString& displayName,
                                          ISelectPathMachine& machine)
{
    CSelectPathResult result;
    result.folder = NormalizeFolder(entered);
    const HVString& folder = result.folder;

    // 1. Nothing entered (or nothing but blanks).
    if (folder.IsEmpty())
        return RefuseInvalid(std::move(result), 1, u"%s can not be installed to an empty folder.\r\n\r\n", displayName);

    // 2. Nothing follows the root: "C:\", a bare "\" or a share "\\server\share\".
    const int32_t rootLength = HVFileSystemPath::RootLength(folder.view());
    if (rootLength > 0 && folder.GetLength() <= rootLength)
        return RefuseInvalid(std::move(result), 2, u"%s can not be installed to the root of a drive.\r\n\r\n",
                             displayName);

    // 3. The Windows folder or anything inside it.
    if (StartsWithFolder(folder, machine.WindowsFolder()))
        return RefuseInvalid(std::move(result), 3, u"%s can not be installed in the Windows folder.\r\n\r\n",
                             displayName);

    // 4. Program Files itself; a folder inside it is where programs belong.
    const HVString programFiles = HVFileSystemPath::AddBackslash(machine.ProgramFilesFolder());
    if (!programFiles.IsEmpty() && folder.EqualsNoCase(programFiles))
        return RefuseInvalid(std::move(result), 4,
                             u"%s can not be installed to the root program files folder.\r\n\r\n", displayName);

    // 5. Another program's folder or anything inside it.
    for (const HVString& other : machine.ProtectedFolders()) {
        if (StartsWithFolder(folder, other))
            return RefuseInvalid(std::move(result), 5,
                                 u"%s can not be installed where a pre-existing program is installed.\r\n\r\n",
                                 displayName);
    }

    // 6. The folder must exist or be creatable. A relative path would land wherever the
    // installer's current folder happens to be, so it is never handed to the system.
    if (!HVFileSystemPath::IsAbsolute(folder.view()) || !machine.MakeDirectoryTree(folder))
        return Refuse(std::move(result), 6, Tr(u"Error"),
                      HVString::Format(Tr(u"Failed to create %s directory.").c_str(), folder));

    // 7. Room for the program; free space that can't be read doesn't stop the install.
    uint64_t freeBytes = 0;
    if (machine.FreeBytes(folder, freeBytes) && (freeBytes >> 20) < kMinimumFreeMiB) {
        HVString text = HVString::Format(Tr(u"There is not enough free space on this drive to install %s.\r\n\r\n").c_str(),
                                         displayName);
        text += HVString::Format(Tr(u"%s installation requires at least 20 MB of free disk space.\r\n\r\n").c_str(),
                                 displayName);
        text += Tr(u"Please select a different drive or free more space on the selected drive.");
        return Refuse(std::move(result), 7, Tr(u"Insufficient Disk Space"), text);
    }

    result.accepted = true;
    return result;
}
