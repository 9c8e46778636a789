#include "engine/win/CEarlierVersionUpgrade.h"

#include "changes/win/CRegistryWriter.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVRegKey.h"
#include "product/CProductRecordRules.h"
#include "product/InstallOptions.h"
#include "product/win/CProductIdentity.h"

#include <algorithm>

namespace
{
bool Contains(const std::vector<HVString>& names, const HVString& name)
{
    return std::any_of(names.begin(), names.end(), [&](const HVString& n) { return n.EqualsNoCase(name.view()); });
}

HVString LastPart(const HVString& path) { return path.Mid(path.ReverseFind(u'\\') + 1); }
}

HVString CEarlierVersionUpgrade::Run(const std::vector<HVString>& defaultsJustWritten)
{
    const CProductIdentity& product = context_.product;
    const HKEY hive = product.GetRegistryHive();
    for (const HVString& root : CProductRecordRules::EarlierVersionRoots(product.GetDisplayName(), product.GetMajorVersion())) {
        if (!HVRegKey::KeyExists(hive, root)) {
            HVRegKey probe;
            // Present but closed to us: say so and look further back.
            if (!probe.Open(hive, root, KEY_READ) && probe.LastError() != ERROR_FILE_NOT_FOUND)
                HVLog::Write(HVLog::kWarning, "CEarlierVersionUpgrade::Run", u"Skipping %s: cannot be read (error %d)",
                             root, static_cast<int32_t>(probe.LastError()));
            continue;
        }
        HVString earlierFolder;
        HVRegKey installer;
        if (installer.Open(hive, root + u"\\Installer"))
            installer.QueryString(u"Install Directory", earlierFolder);
        HVLog::Write(HVLog::kInfo, "CEarlierVersionUpgrade::Run", u"Carrying over %s (installed in \"%s\")", root,
                     earlierFolder);
        CopyProperties(root + u"\\Properties", earlierFolder, defaultsJustWritten);
        if (HVRegKey::KeyExists(hive, root + u"\\Dependencies"))
            CopyTree(root + u"\\Dependencies", product.GetRegistryRoot() + u"\\Dependencies");
        if (!context_.options.portable)
            MoveRunEntry(LastPart(root));
        return root;
    }
    HVLog::Write(HVLog::kInfo, "CEarlierVersionUpgrade::Run", u"No earlier version");
    return HVString();
}

void CEarlierVersionUpgrade::CopyProperties(const HVString& from, const HVString& earlierFolder,
                                            const std::vector<HVString>& defaultsJustWritten)
{
    const HKEY hive = context_.product.GetRegistryHive();
    HVRegKey source;
    if (!source.Open(hive, from, KEY_READ)) {
        if (source.LastError() != ERROR_FILE_NOT_FOUND)
            HVLog::Write(HVLog::kWarning, "CEarlierVersionUpgrade::CopyProperties", u"Skipping %s: cannot be read (error %d)",
                         from, static_cast<int32_t>(source.LastError()));
        return;
    }
    CRegistryWriter target(context_.changes, hive, context_.product.GetSettingsKey());
    if (!target.Open())
        return;
    int32_t copied = 0, kept = 0;
    for (const HVString& name : source.EnumValueNames()) {
        if (CProductRecordRules::IsRetiredSetting(name))
            continue;
        if (target.Key().HasValue(name) && !Contains(defaultsJustWritten, name)) {
            ++kept;
            continue;
        }
        DWORD type = 0;
        std::vector<uint8_t> data;
        if (!source.QueryValue(name, type, data))
            continue;
        HVString text;
        if (CProductRecordRules::IsLibraryPathSetting(name) && (type == REG_SZ || type == REG_EXPAND_SZ) &&
            source.QueryString(name, text)) {
            const HVString rewritten = CProductRecordRules::RewriteLibraryPath(text, earlierFolder);
            if (rewritten != text) {
                HVLog::Write(HVLog::kInfo, "CEarlierVersionUpgrade::CopyProperties", u"%s: \"%s\" becomes \"%s\"", name,
                             text, rewritten);
                const auto* bytes = reinterpret_cast<const uint8_t*>(rewritten.c_str());
                data.assign(bytes, bytes + (rewritten.GetLength() + 1) * sizeof(char16_t));
            }
        }
        copied += target.SetValue(name, type, data) ? 1 : 0;
    }
    HVLog::Write(HVLog::kInfo, "CEarlierVersionUpgrade::CopyProperties", u"%d settings carried over, %d kept", copied, kept);
}

void CEarlierVersionUpgrade::CopyTree(const HVString& from, const HVString& to)
{
    const HKEY hive = context_.product.GetRegistryHive();
    HVRegKey source;
    if (!source.Open(hive, from, KEY_READ)) {
        HVLog::Write(HVLog::kWarning, "CEarlierVersionUpgrade::CopyTree", u"Skipping %s: cannot be read", from);
        return;
    }
    CRegistryWriter target(context_.changes, hive, to);
    if (!target.Open())
        return;
    for (const HVString& name : source.EnumValueNames()) {
        DWORD type = 0;
        std::vector<uint8_t> data;
        if (!target.Key().HasValue(name) && source.QueryValue(name, type, data))
            target.SetValue(name, type, data);
    }
    for (const HVString& sub : source.EnumSubKeys())
        CopyTree(from + u"\\" + sub, to + u"\\" + sub);
}

void CEarlierVersionUpgrade::MoveRunEntry(const HVString& earlierName)
{
    CRegistryWriter run(context_.changes, HKEY_CURRENT_USER, kRunKey);
    if (!run.OpenExisting() || !run.Key().HasValue(earlierName))
        return;
    const HVString command =
        HVString::Format(u"\"%s%s\" /Boot", context_.installFolder, context_.product.GetLauncherName());
    if (run.SetString(context_.product.GetInstallationKeyName(), command))
        run.DeleteValue(earlierName);
}
