#include "changes/CJournalFormat.h"

namespace
{
HVString Entry(const HVString& first, std::u16string_view second)
{
    return HVString::Format(u"%s|%s", first, HVString(second));
}
}

HVString CJournalFormat::InstallEntry(const HVString& stagedPath, const HVString& destinationPath)
{
    return Entry(stagedPath, destinationPath.view());
}

HVString CJournalFormat::DeleteEntry(const HVString& path)
{
    return Entry(path, kDeleteMarker);
}

HVString CJournalFormat::RegisterEntry(const HVString& path)
{
    return Entry(path, kRegisterMarker);
}

bool CJournalFormat::IsDeleteEntry(const HVString& entry)
{
    // Anywhere in the entry, as the companion program tests it: a path that happens to hold
    // the marker is read as a delete, so the writer must agree.
    return entry.Find(std::u16string_view(kDeleteMarker)) >= 0;
}

std::vector<CJournalFormat::Value> CJournalFormat::FileValues(const std::vector<HVString>& pendingFiles)
{
    std::vector<Value> values;
    values.reserve(pendingFiles.size());
    int deletes = 0;
    int installs = 0;
    for (const HVString& entry : pendingFiles) {
        const bool isDelete = IsDeleteEntry(entry);
        values.push_back({HVString::Format(isDelete ? u"Delete File (%d)" : u"Install File (%d)",
                                           isDelete ? deletes++ : installs++),
                          entry});
    }
    return values;
}

std::vector<CJournalFormat::Value> CJournalFormat::RegisterValues(const std::vector<HVString>& pendingRegistrations)
{
    std::vector<Value> values;
    values.reserve(pendingRegistrations.size());
    int index = 0;
    for (const HVString& entry : pendingRegistrations)
        values.push_back({HVString::Format(u"Register File (%d)", index++), entry});
    return values;
}

HVString CJournalFormat::RunOnceCommand(const HVString& installFolder)
{
    return HVString::Format(u"\"%sPackageInstaller.exe\" \"/FinishInstall\"", installFolder);
}

HVString CJournalFormat::FinishText(const HVString& launcherPath)
{
    return HVString::Format(u"%s\r\n%s", HVString(kFinishTag), launcherPath);
}
