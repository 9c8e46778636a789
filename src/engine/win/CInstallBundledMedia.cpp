#include "engine/win/CInstallBundledMedia.h"

#include "changes/win/CRegistryWriter.h"
#include "engine/IInstallProgress.h"
#include "engine/win/CDependencyRunner.h"
#include "engine/win/CFileInstaller.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVFileSystem.h"
#include "product/CCopyRules.h"
#include "product/InstallOptions.h"
#include "product/win/CProductIdentity.h"

bool CInstallBundledMedia::Install()
{
    const CInstallContext& context = runner_.Context();
    if (context.options.bundledMediaFolder.IsEmpty())
        return true;
    context.progress.SetProgressPosition(0);
    context.progress.SetStatusText(u"Installing media...");
    const HVString media = context.installFolder + u"Media\\";
    CFileInstaller files(context.deferred, context.changes);
    files.SetInstallFolder(context.installFolder);
    const bool copied = files.CopyTree(HVFileSystem::NormalizeFolderPath(context.options.bundledMediaFolder), media,
                                       kCopyVersionCheck, context.progress);
    HVLog::Write(copied ? HVLog::kInfo : HVLog::kError, "CInstallBundledMedia::Install", u"%d files from %s into %s",
                 files.FilesCopied(), context.options.bundledMediaFolder, media);
    const HVString playlist = media + u"Playlist.mpl";
    if (HVFileSystem::Exists(playlist, false)) {
        CRegistryWriter settings(context.changes, context.product.GetRegistryHive(), context.product.GetSettingsKey());
        if (!settings.Open() || !settings.SetString(kStartupMediaSetting, playlist))
            return false;
    }
    return copied;
}
