#include "install/win/CSelectPathMachine.h"

#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVProductPaths.h"
#include "foundation/win/HVRegKey.h"
#include "install/win/CInstallWizard.h"

HVString CSelectPathMachine::WindowsFolder() const
{
    wchar_t buffer[MAX_PATH] = {};
    const UINT length = ::GetWindowsDirectoryW(buffer, MAX_PATH);
    return length > 0 && length < MAX_PATH ? HVString(buffer) : HVString(u"C:\\Windows\\");
}

HVString CSelectPathMachine::ProgramFilesFolder() const
{
    return HVProductPaths::GetProgramFilesFolder();
}

std::vector<HVString> CSelectPathMachine::ProtectedFolders() const
{
    return wizard_.ProtectedFolders();
}

HVString CSelectPathMachine::RememberedFolder() const
{
    HVRegKey installer;
    HVString folder;
    const CProductIdentity& product = wizard_.Product();
    if (installer.Open(product.GetRegistryHive(), product.GetInstallerKey()))
        installer.QueryString(u"Install Directory", folder);
    return folder;
}

HVString CSelectPathMachine::EarlierInstallationFolder() const
{
    return wizard_.EarlierInstallationFolder();
}

bool CSelectPathMachine::MakeDirectoryTree(const HVString& folder)
{
    return wizard_.InstallRun().MakeFolderEarly(folder) && HVFileSystem::FolderExists(folder);
}

bool CSelectPathMachine::FreeBytes(const HVString& folder, uint64_t& bytes) const
{
    return HVFileSystem::GetFreeDiskSpace(folder, bytes);
}
