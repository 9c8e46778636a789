#include "engine/win/CInstallationRecords.h"

#include "changes/CInstallRecord.h"
#include "changes/win/CRegistryWriter.h"
#include "foundation/HVLog.h"
#include "foundation/HVSystemIdentity.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVProductPaths.h"
#include "product/CProductRecordRules.h"
#include "product/InstallOptions.h"
#include "product/win/CProductIdentity.h"

#include <objbase.h>

CInstallationRecords::CInstallationRecords(const CInstallContext& context)
    : context_(context),
      keyName_(CProductRecordRules::InstallationKeyName(context.product.GetInstallationKeyName(),
                                                        context.options.portable, context.installFolder))
{
}

HVString CInstallationRecords::NewGuid()
{
    GUID guid{};
    wchar_t text[40] = {};
    if (FAILED(::CoCreateGuid(&guid)) || ::StringFromGUID2(guid, text, 40) == 0)
        return HVString();
    return HVString(text);
}

bool CInstallationRecords::Record()
{
    const CProductIdentity& product = context_.product;
    CRegistryWriter record(context_.changes, HKEY_LOCAL_MACHINE,
                           HVString(HVProductPaths::kInstallationsKey) + u"\\" + keyName_, HVRegView::Key64);
    HVString guid;
    if (!record.Open() ||
        !record.SetString(u"Path", context_.installFolder + product.GetLauncherName()) ||
        !record.SetString(u"Version", product.GetVersionText()) ||
        !record.SetDWORD(u"OS Version", static_cast<DWORD>(HVSystemIdentity::Current().GetCode())) ||
        !record.SetString(u"Launcher Name", product.GetLauncherName()) ||
        !record.SetString(u"Uninstall Key", context_.options.portable ? HVString() : keyName_))
        return false;
    // The identifier outlives every reinstall: the product's services know the installation by it.
    if (!record.Key().QueryString(u"GUID", guid) || guid.IsEmpty()) {
        guid = NewGuid();
        if (guid.IsEmpty() || !record.SetString(u"GUID", guid)) {
            HVLog::Write(HVLog::kError, "CInstallationRecords::Record", u"No identifier for %s", record.NotedPath());
            return false;
        }
    }
    CRegistryWriter installer(context_.changes, product.GetRegistryHive(), product.GetInstallerKey());
    if (!installer.Open() || !installer.SetString(u"Distributor ID", context_.options.distributorId) ||
        !installer.SetString(u"Install Directory", context_.installFolder))
        return false;
    HVLog::Write(HVLog::kInfo, "CInstallationRecords::Record", u"Recorded as %s (%s)", record.NotedPath(), guid);
    return true;
}

void CInstallationRecords::WriteUninstallEntry()
{
    if (context_.options.portable) {
        HVLog::Write(HVLog::kInfo, "CInstallationRecords::WriteUninstallEntry", u"Portable: no uninstall entry");
        return;
    }
    const CProductIdentity& product = context_.product;
    CRegistryWriter entry(context_.changes, HKEY_LOCAL_MACHINE, HVString(kUninstallKey) + u"\\" + keyName_,
                          HVRegView::Key64);
    if (!entry.Open())
        return;
    SYSTEMTIME today{};
    ::GetLocalTime(&today);
    const HVString support = CProductIdentity::kSupportAddress;
    const bool written =
        entry.SetString(u"DisplayName", product.GetDisplayName() + u" (64-bit)") &&
        entry.SetString(u"HelpLink", support) && entry.SetString(u"URLUpdateInfo", support) &&
        entry.SetString(u"URLInfoAbout", support) && entry.SetString(u"InstallLocation", context_.installFolder) &&
        entry.SetString(u"Publisher", CProductIdentity::kPublisher) &&
        entry.SetString(u"DisplayVersion", product.GetVersionText()) &&
        entry.SetString(u"DisplayIcon", context_.installFolder + u"application.ico") &&
        entry.SetString(u"UninstallString", context_.installFolder + u"HVMediaUninstall.exe") &&
        // What deployment tools start to remove the product without a question.
        entry.SetString(u"QuietUninstallString", u"\"" + context_.installFolder + u"HVMediaUninstall.exe\" /Silent") &&
        entry.SetDWORD(u"EstimatedSize", CProductRecordRules::SizeInKilobytes(FolderSize(context_.installFolder))) &&
        entry.SetString(u"InstallDate", CProductRecordRules::DateText(today.wYear, today.wMonth, today.wDay)) &&
        entry.SetDWORD(u"NoModify", 1) && entry.SetDWORD(u"NoRepair", 1);
    if (!written)
        HVLog::Write(HVLog::kError, "CInstallationRecords::WriteUninstallEntry", u"Incomplete: %s", entry.NotedPath());
}

uint64_t CInstallationRecords::FolderSize(const HVString& folder)
{
    std::vector<HVFileSystem::Entry> entries;
    if (!HVFileSystem::EnumerateFolder(folder, entries))
        return 0;
    uint64_t size = 0;
    for (const HVFileSystem::Entry& item : entries) {
        // The install record grows until the run ends, and what the run keeps for a rollback
        // goes when it ends: neither is part of the product's size.
        if ((!item.isFolder && item.name.EqualsNoCase(CInstallRecord::kFileName)) ||
            item.name.EndsWithNoCase(InstallChange::kKeptSuffix))
            continue;
        size += item.isFolder ? FolderSize(folder + item.name + u"\\") : item.size;
    }
    return size;
}
