#include "integration/win/CInstallWAPlugin.h"

#include "changes/CInstallChangeLog.h"
#include "changes/win/CRegistryWriter.h"
#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"
#include "foundation/win/HVContainedPath.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVLoadLibrary.h"
#include "foundation/win/HVRegKey.h"
#include "integration/win/CRunningProduct.h"
#include "integration/win/PluginEntryPoints.h"
#include "product/win/CProductIdentity.h"
#include "toolkit/win/HVMessageBox.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace
{
namespace PE = PluginEntryPoints;

// A plug-in's own text: bounded, because nothing promises it ends where it should.
HVString PluginText(const char* text, size_t limit = 1024)
{
    if (!text)
        return HVString();
    size_t length = 0;
    while (length < limit && text[length])
        ++length;
    if (length == 0)
        return HVString();
    std::vector<wchar_t> wide(length + 1);
    const int n = ::MultiByteToWideChar(CP_ACP, 0, text, static_cast<int>(length), wide.data(), static_cast<int>(length));
    return HVString(std::u16string_view(reinterpret_cast<const char16_t*>(wide.data()), static_cast<size_t>(n)));
}

// "mp3;mp2\0MPEG Audio\0ogg\0Ogg Vorbis\0\0": the extension halves of the pairs, ";"-joined.
HVString Extensions(const char* list)
{
    HVString result;
    for (int pair = 0; list && *list && pair < 256; ++pair) {
        const HVString extensions = PluginText(list);
        if (!result.IsEmpty() && !extensions.IsEmpty())
            result += u';';
        result += extensions;
        list += std::strlen(list) + 1;
        if (!*list)
            break;
        list += std::strlen(list) + 1;
    }
    return result;
}

// A text of the file's version resource ("FileDescription", "CompanyName", ...), in its first
// language.
HVString VersionString(const HVString& path, const wchar_t* name)
{
    DWORD ignored = 0;
    const DWORD size = ::GetFileVersionInfoSizeW(path.w(), &ignored);
    if (size == 0)
        return HVString();
    std::vector<uint8_t> data(size);
    if (!::GetFileVersionInfoW(path.w(), 0, size, data.data()))
        return HVString();
    struct Translation
    {
        WORD language;
        WORD codePage;
    }* translation = nullptr;
    UINT length = 0;
    if (!::VerQueryValueW(data.data(), L"\\VarFileInfo\\Translation", reinterpret_cast<void**>(&translation), &length) ||
        length < sizeof(Translation))
        return HVString();
    const HVString query = HVString::Format(u"\\StringFileInfo\\%04x%04x\\", translation->language,
                                            translation->codePage) + HVString(reinterpret_cast<const char16_t*>(name));
    wchar_t* value = nullptr;
    if (!::VerQueryValueW(data.data(), query.w(), reinterpret_cast<void**>(&value), &length) || !value)
        return HVString();
    return HVString(value);
}

intptr_t __cdecl VstHost(PE::VstEffect*, int32_t opcode, int32_t, intptr_t, void*, float)
{
    return opcode == 1 ? 2400 : 0;  // the host's VST version; nothing else is offered
}

HVString KeyName(HVString name)
{
    name.Replace(u'\\', u'_');
    return name.Trim();
}
}   // namespace

struct CInstallWAPlugin::Examined
{
    Kind kind = Kind::Any;
    bool vst = false;
    Record record;
    // Girder only.
    HVString version;
};

const char16_t* CInstallWAPlugin::KindFolder(Kind kind)
{
    switch (kind) {
    case Kind::Input:
        return u"Input";
    case Kind::RemoteControl:
        return u"RemoteControl";
    default:
        return u"DSP";
    }
}

bool CInstallWAPlugin::Refuse(const HVString& text)
{
    HVLog::Write(HVLog::kWarning, "CInstallWAPlugin::Install", u"%s", text);
    if (!quiet_)
        HVMessageBox::Show(owner_, text, HVTranslator::Translate(u"Information"), MB_OK | MB_ICONINFORMATION);
    return false;
}

bool CInstallWAPlugin::Install(const HVString& path, Kind expected)
{
    Examined found;
    if (!Examine(path, expected, found))
        return false;
    return CopyAndRecord(path, found);
}

bool CInstallWAPlugin::Examine(const HVString& path, Kind expected, Examined& found)
{
    const auto cannotLoad = [&](const HVString& reason) {
        return Refuse(HVString::Format(HVTranslator::Translate(u"Cannot load plug-in.\r\n\r\n%s").c_str(), reason));
    };
    DWORD error = 0;
    HVModule module = HVLoadLibrary::Load(path, &error);
    if (!module)
        return cannotLoad(HVLoadLibrary::SystemErrorText(error));
    // Through void*: the exports are of many types, none of them FARPROC's.
    const auto proc = [&](const char* name) { return reinterpret_cast<void*>(::GetProcAddress(module.Get(), name)); };
    const HVString fileName = HVFileSystemPath::GetFileName(path);
    found.record.fileDescription = VersionString(path, L"FileDescription");

    if (auto getIn = reinterpret_cast<PE::GetInModule>(proc(PE::kInputExport))) {
        found.kind = Kind::Input;
        const PE::InModule* in = getIn();
        if (!in)
            return cannotLoad(HVTranslator::Translate(u"The plug-in gave no module record."));
        found.record.pluginDescription = PluginText(in->description);
        found.record.name = found.record.pluginDescription.IsEmpty()
                                ? HVTranslator::Translate(u"Unknown input plug-in")
                                : found.record.pluginDescription;
        if (in->version != kRequiredInputVersion)
            return Refuse(HVString::Format(
                HVTranslator::Translate(u"The input plugin '%s' is not the correct version.\r\n\r\nPlugin version: %d\r\nRequired version: %d").c_str(),
                found.record.name, in->version, kRequiredInputVersion));
        found.record.extensions = Extensions(in->fileExtensions);
    } else if (auto getDsp = reinterpret_cast<PE::GetDSPHeader>(proc(PE::kDSPExport))) {
        found.kind = Kind::DSP;
        const PE::DSPHeader* header = getDsp();
        found.record.pluginDescription = header ? PluginText(header->description) : HVString();
    } else if (proc(PE::kVisExport)) {
        return Refuse(HVTranslator::Translate(u"Winamp 2.x visualization plug-ins are not supported."));
    } else if (proc(PE::kGirderExports[0])) {
        for (const char* name : PE::kGirderExports) {
            if (!proc(name))
                return cannotLoad(HVString::Format(HVTranslator::Translate(u"The Girder entry point %s is missing.").c_str(), name));
        }
        found.kind = Kind::RemoteControl;
        char text[512];
        const auto girder = [&](const char* name) {
            text[0] = 0;
            reinterpret_cast<PE::GirderText>(proc(name))(text, sizeof(text) - 1);
            text[sizeof(text) - 1] = 0;
            return PluginText(text);
        };
        found.record.name = girder("gir_name");
        found.record.pluginDescription = girder("gir_description");
        found.version = girder("gir_version");
    } else if (path.EndsWithNoCase(u".vst3") && proc(PE::kVst3Export)) {
        found.kind = Kind::DSP;
        found.vst = true;
        // The effect's name is the one its factory gives its audio class; a module may hold
        // several classes (editors, controllers), of which the first effect counts.
        PE::Vst3Factory* factory = reinterpret_cast<PE::GetPluginFactory>(proc(PE::kVst3Export))();
        if (!factory || !factory->methods)
            return cannotLoad(HVTranslator::Translate(u"The VST 3 module gave no factory."));
        const int32_t classes = factory->methods->countClasses(factory);
        for (int32_t i = 0; i < classes && i < 256 && found.record.pluginDescription.IsEmpty(); ++i) {
            PE::Vst3ClassInfo info{};
            if (factory->methods->getClassInfo(factory, i, &info) == 0 &&
                std::strncmp(info.category, PE::kVst3EffectCategory, sizeof(info.category)) == 0)
                found.record.pluginDescription = PluginText(info.name, sizeof(info.name));
        }
        factory->methods->release(factory);
    } else {
        PE::VstMain vstMain = nullptr;
        for (const char* name : PE::kVstExports)
            vstMain = vstMain ? vstMain : reinterpret_cast<PE::VstMain>(proc(name));
        if (!vstMain)
            return cannotLoad(HVTranslator::Translate(u"The file is not a plug-in of a supported kind."));
        found.kind = Kind::DSP;
        found.vst = true;
        PE::VstEffect* effect = vstMain(&VstHost);
        if (!effect || effect->magic != PE::kVstMagic || !effect->dispatcher)
            return cannotLoad(HVTranslator::Translate(u"The VST plug-in did not start."));
        char name[256] = {};
        effect->dispatcher(effect, PE::kVstGetEffectName, 0, 0, name, 0.0f);
        name[sizeof(name) - 1] = 0;
        found.record.pluginDescription = PluginText(name);
        effect->dispatcher(effect, PE::kVstClose, 0, 0, nullptr, 0.0f);
    }

    if (found.record.name.IsEmpty())
        found.record.name = !found.record.pluginDescription.IsEmpty() ? found.record.pluginDescription
                            : !found.record.fileDescription.IsEmpty()  ? found.record.fileDescription
                                                                       : fileName;
    if (found.vst)
        found.record.name = HVString::Format(u"%s (VST Plugin)", found.record.name);
    // Visualizations have no folder of their own any more: asking for one takes what comes.
    if (expected != Kind::Any && expected != Kind::Visualization && expected != found.kind)
        return Refuse(HVString::Format(HVTranslator::Translate(u"The plug-in '%s' is not of the expected kind.").c_str(),
                                       found.record.name));
    return true;
}

bool CInstallWAPlugin::CopyAndRecord(const HVString& path, const Examined& found)
{
    const HVString folder = installFolder_ + u"Plugins\\" + KindFolder(found.kind) + u"\\";
    const HVString target = folder + HVFileSystemPath::GetFileName(path);
    const HVString recordPath = HVString(kPluginsKey) + KindFolder(found.kind) + u"\\" + KeyName(found.record.name);
    // The record's key first: a plug-in the player could never find must not be copied either.
    CRegistryWriter record(changes_, HKEY_LOCAL_MACHINE, recordPath);
    if (!record.Open())
        return Refuse(HVString::Format(HVTranslator::Translate(u"Cannot record plug-in.\r\n\r\nHKEY_LOCAL_MACHINE\\%s").c_str(),
                                       recordPath));
    if (!HVFileSystem::IsSameFile(path, target)) {
        // A junction on the way would put the module, and what it overwrites, anywhere.
        if (!HVContainedPath::Check(target, installFolder_))
            return Refuse(HVString::Format(HVTranslator::Translate(u"Failed to unzip file '%s'.").c_str(),
                                           HVFileSystemPath::GetFileName(path)));
        if (!HVFileSystem::FolderExists(folder)) {
            HVFileSystem::MakeDirectoryTree(folder);
            changes_.Note(InstallChange::Kind::FolderCreated, folder);
        }
        const bool existed = HVFileSystem::Exists(target, false);
        changes_.NoteStarted(target, existed);
        DWORD error = 0;
        if (!HVFileSystem::CopyFileWhole(path, target, &error)) {
            if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION)
                return Refuse(HVString::Format(HVTranslator::Translate(u"Destination file is in use.\r\n%s").c_str(), target));
            return Refuse(HVString::Format(HVTranslator::Translate(u"Cannot copy plug-in.\r\n\r\n%s").c_str(),
                                           HVLoadLibrary::SystemErrorText(error)));
        }
        changes_.NoteFile(target, existed);
    }

    record.SetString(u"Path", target);
    record.SetString(u"Plugin Description", found.record.pluginDescription);
    record.SetString(u"File Description", found.record.fileDescription);
    record.SetString(u"Name", found.record.name);
    if (!found.record.extensions.IsEmpty())
        record.SetString(u"Extensions", found.record.extensions);
    if (found.kind == Kind::RemoteControl) {
        const HVString company = VersionString(path, L"CompanyName");
        record.SetDWORD(u"GirderPlugin", 1);
        record.SetString(u"Company", company);
        record.SetString(u"Version", found.version);
        record.SetString(u"Plugin Author", company);
        record.SetString(u"Copyright", VersionString(path, L"LegalCopyright"));
        record.SetString(u"Filename", HVFileSystemPath::GetFileName(path));
        record.SetDWORD(u"Configurable", 1);
    }
    record.SetDWORD(u"IVersion", kRecordVersion);
    record.DeleteValue(u"strPath");
    // What the player's plug-in manager offers to remove, and where its record is.
    CRegistryWriter removal(changes_, HKEY_LOCAL_MACHINE, HVString(kPluginsKey) + u"Uninstall\\" + KeyName(found.record.name));
    if (removal.Open()) {
        removal.SetString(u"Path", target);
        removal.SetString(u"Record", HVString(KindFolder(found.kind)) + u"\\" + KeyName(found.record.name));
    }
    HVLog::Write(HVLog::kInfo, "CInstallWAPlugin::Install", u"%s installed as %s plug-in '%s'", target,
                 KindFolder(found.kind), found.record.name);
    CRunningProduct::Tell(CRunningProduct::kPluginInstalled, target);
    return true;
}

std::optional<CInstallWAPlugin::Record> CInstallWAPlugin::Find(Kind kind, const HVString& name)
{
    for (const Store& store : Stores())
        if (auto record = Read(store, kind, name))
            return record;
    return std::nullopt;
}

const std::vector<CInstallWAPlugin::Store>& CInstallWAPlugin::Stores()
{
    // The player's own list comes first: what it keeps there is what it actually loads.
    static const std::vector<Store> stores = {
        {HKEY_CURRENT_USER, HVString(CProductIdentity::kRegistryRoot) + u"\\Plugins\\"},
        {HKEY_LOCAL_MACHINE, kPluginsKey},
    };
    return stores;
}

std::optional<CInstallWAPlugin::Record> CInstallWAPlugin::Read(const Store& store, Kind kind, const HVString& name)
{
    HVRegKey key;
    DWORD layout = 0;
    if (!key.Open(store.root, store.path + KindFolder(kind) + u"\\" + KeyName(name)) ||
        !key.QueryDWORD(u"IVersion", layout) || layout != kRecordVersion)
        return std::nullopt;
    Record record;
    key.QueryString(u"Path", record.path);
    key.QueryString(u"Plugin Description", record.pluginDescription);
    key.QueryString(u"File Description", record.fileDescription);
    if (!key.QueryString(u"Name", record.name) || record.name.IsEmpty())
        record.name = name;
    key.QueryString(u"Extensions", record.extensions);
    return record;
}

std::vector<CInstallWAPlugin::Record> CInstallWAPlugin::List(Kind kind)
{
    std::vector<Record> records;
    std::vector<HVString> seen;
    for (const Store& store : Stores()) {
        HVRegKey folder;
        if (!folder.Open(store.root, store.path + KindFolder(kind)))
            continue;
        for (const HVString& name : folder.EnumSubKeys()) {
            const bool known = std::any_of(seen.begin(), seen.end(), [&](const HVString& s) { return s.EqualsNoCase(name); });
            auto record = known ? std::nullopt : Read(store, kind, name);
            if (!record)
                continue;
            seen.push_back(name);
            records.push_back(std::move(*record));
        }
    }
    return records;
}
