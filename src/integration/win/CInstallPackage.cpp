#include "integration/win/CInstallPackage.h"

#include "changes/CInstallChangeLog.h"
#include "changes/win/CComponentRegistration.h"
#include "changes/win/CRegistryWriter.h"
#include "changes/win/CRegistryWriter.h"
#include "changes/win/RunProgram.h"
#include "engine/IInstallProgress.h"
#include "engine/win/CDownloadAndRun.h"
#include "engine/win/CInstallContext.h"
#include "engine/win/CTemporaryDownloadFile.h"
#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/HVTextDecoder.h"
#include "foundation/HVTranslator.h"
#include "foundation/HVUrl.h"
#include "foundation/HVZipReader.h"
#include "foundation/win/HVContainedPath.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVHttpReader.h"
#include "foundation/win/HVProductPaths.h"
#include "foundation/win/HVZipUnpacker.h"
#include "integration/CRegistryActionLine.h"
#include "integration/win/ApplyRegistryLines.h"
#include "integration/win/CInstallWAPlugin.h"
#include "integration/win/CRunningProduct.h"
#include "product/HVInstallDescription.h"
#include "product/HVInstallDescription.h"
#include "product/HVInstallDescription.h"
#include "product/InstallOptions.h"
#include "product/InstallOptions.h"
#include "product/InstallOptions.h"
#include "product/win/CProductIdentity.h"
#include "product/win/CProductIdentity.h"
#include "product/win/CProductIdentity.h"
#include "toolkit/win/HVMessageBox.h"


#include <string_view>

namespace
{
using Description = CPackageDescription;

HVString Translated(const char16_t* english)
{
    return HVTranslator::Translate(english);
}

template <class... Args>
HVString TF(const char16_t* english, const Args&... args)
{
    return HVString::Format(Translated(english).c_str(), args...);
}

HVString WindowsFolder(UINT(WINAPI* get)(LPWSTR, UINT))
{
    wchar_t buffer[MAX_PATH + 1] = {};
    const UINT length = get(buffer, MAX_PATH + 1);
    return length == 0 || length > MAX_PATH ? HVString() : HVFileSystemPath::AddBackslash(HVString(buffer));
}

// All the root description files inflated before the user is asked come to no more than this:
// an archive of hundreds of large ".xml" files would otherwise keep the question waiting.
constexpr uint64_t kDescriptionBudget = 4u << 20;

// A name that is one plain part of a path: no folders, nothing Windows would take otherwise.
bool IsPlainName(const HVString& name)
{
    return name.Find(u'\\') < 0 && name.Find(u'/') < 0 && HVZipReader::IsSafeName(name.view());
}

// A name the description gives for a place inside the package or a folder, as the archive's
// member names are written.
HVString MemberName(const HVString& name)
{
    HVString member = name;
    member.Replace(u'/', u'\\');
    return member.TrimRight(u"\\");
}

// The product's main window, closed politely; true once it is gone (or was never there).
bool CloseProduct()
{
    HWND frame = ::FindWindowW(L"LWFrame", nullptr);
    if (frame)
        ::PostMessageW(frame, WM_CLOSE, 0, 0);
    for (int i = 0; frame && i < 100; ++i) {
        ::Sleep(50);
        frame = ::FindWindowW(L"LWFrame", nullptr);
    }
    return frame == nullptr;
}

CInstallWAPlugin::Kind PluginKind(const HVString& word)
{
    if (word == u"REG_WA_IN")
        return CInstallWAPlugin::Kind::Input;
    if (word == u"REG_WA_DSP")
        return CInstallWAPlugin::Kind::DSP;
    if (word == u"REG_WA_VIS")
        return CInstallWAPlugin::Kind::Visualization;
    return CInstallWAPlugin::Kind::Any;
}
}   // namespace

bool CInstallPackage::Fail(const HVString& text)
{
    HVLog::Write(HVLog::kWarning, "CInstallPackage::Install", u"%s", text);
    if (context_.interactive)
        HVMessageBox::Show(context_.owner, text, Translated(u"Information"), MB_OK | MB_ICONINFORMATION);
    return false;
}

bool CInstallPackage::FailPackage(const HVString& reason, const HVString& location)
{
    return Fail(TF(u"Failed to install package.\r\n\r\nMore Info: %s\r\nURL: %s", reason, location));
}

void CInstallPackage::Status(const char16_t* text)
{
    if (context_.progress)
        context_.progress->SetStatusText(text);
}

HVString CInstallPackage::Expand(const HVString& text) const
{
    return Description::ExpandMacros(text, context_.nameWithVersion, context_.installFolder);
}

HVString CInstallPackage::CopyFolder(const HVString& word) const
{
    const HVString& program = context_.installFolder;
    if (word == u"COPY_HELPDIR")
        return program + u"Help\\";
    if (word == u"COPY_PLUGINDIR")
        return program + u"Plugins\\";
    if (word == u"COPY_TRACKINFOS")
        return HVProductPaths::GetResourceFolder(program, HVProductPaths::Resource::TrackInfo);
    if (word == u"COPY_VISUALIZATIONS")
        return HVProductPaths::GetResourceFolder(program, HVProductPaths::Resource::Visualizations);
    if (word == u"COPY_VISSCRIPTS")
        return HVProductPaths::GetResourceFolder(program, HVProductPaths::Resource::Visualizations) + u"Scripts\\";
    if (word == u"COPY_VIZCRAFT")
        return program + u"Vizcraft\\";
    if (word == u"COPY_WINDIR")
        return WindowsFolder(&::GetWindowsDirectoryW);
    if (word == u"COPY_SYSDIR")
        return WindowsFolder(&::GetSystemDirectoryW);
    return HVString();
}

HVString CInstallPackage::SkinFolder(bool full, const HVString& mainXml, const HVString& skinName) const
{
    const HVString base = context_.installFolder + (full ? u"FullSkins\\" : u"Skins\\");
    const char16_t* view = mainXml.Find(u"LWFS") >= 0 ? u"Lounge View\\" : u"Standard View\\";
    return HVString::Format(u"%s%s%s", base, view, HVFileSystemPath::AddBackslash(skinName));
}

bool CInstallPackage::Refuse(const HVString& name)
{
    HVLog::Write(HVLog::kWarning, "CInstallPackage::Install", u"'%s' would lead outside the folder it is meant for", name);
    if (refused_.IsEmpty())
        refused_ = name;
    return false;
}

bool CInstallPackage::IsProgramFolderPath(const HVString& path, bool allowTheFolderItself) const
{
    const HVString text = MemberName(path);
    const HVString& program = context_.installFolder;
    if (!HVFileSystemPath::AddBackslash(text).StartsWithNoCase(program.view()))
        return false;
    const HVString rest = text.Mid(program.GetLength());
    return rest.IsEmpty() ? allowTheFolderItself : HVZipReader::IsSafeName(rest.view());
}

bool CInstallPackage::CheckNames(const CPackageDescription& description, const HVString& packageName)
{
    if ((description.Has(Description::kInstallSkin) || description.Has(Description::kInstallMiniSkin)) &&
        !IsPlainName(packageName))
        return Refuse(packageName);
    for (const Description::FileEntry& entry : description.files) {
        if (!HVZipReader::IsSafeName(MemberName(entry.file).view()))
            return Refuse(entry.file);
        for (const Description::Command& command : entry.commands) {
            const HVString param = Expand(command.param);
            const bool folderWord = command.word == u"COPY_DIRECTORY" || command.word == u"DELETE_DIRECTORY";
            if (folderWord && !IsProgramFolderPath(param, command.word == u"COPY_DIRECTORY"))
                return Refuse(command.param);
            if (command.word == u"REGISTRY" && !param.IsEmpty() && !HVZipReader::IsSafeName(MemberName(param).view()))
                return Refuse(command.param);
        }
    }
    return true;
}

bool CInstallPackage::ReadDescription(HVZipReader& reader, CPackageDescription& description, bool& overBudget)
{
    overBudget = false;
    std::vector<uint8_t> bytes;
    uint64_t budget = kDescriptionBudget;
    for (size_t i = 0; i < reader.Members().size(); ++i) {
        const HVZipReader::Member& member = reader.Members()[i];
        if (member.isFolder || member.name.Find(u'\\') >= 0 || !member.name.EndsWithNoCase(u".xml") ||
            member.size > kDescriptionBudget)
            continue;
        if (member.size > budget) {
            HVLog::Write(HVLog::kWarning, "CInstallPackage::ReadDescription",
                         u"No description within the first %d bytes of the package's root .xml files", kDescriptionBudget);
            overBudget = true;
            return false;
        }
        budget -= member.size;
        if (!reader.Extract(i, bytes))
            continue;
        const std::string_view text(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        if (description.Parse(HVTextDecoder::Decode(text))) {
            ownFiles_.push_back(member.name);
            for (const Description::FileEntry& entry : description.files) {
                HVString file = entry.file;
                file.Replace(u'/', u'\\');
                ownFiles_.push_back(HVFileSystemPath::GetFileName(file));
            }
            return true;
        }
    }
    return false;
}

bool CInstallPackage::Confirm(const HVString& name)
{
    if (!context_.interactive)
        return true;
    const HVString text = name + Translated(u" is about to install a component.  Do you wish to continue?");
    return HVMessageBox::Show(context_.owner, text, Translated(u"Confirm Action"), MB_YESNO | MB_ICONQUESTION) == IDYES;
}

bool CInstallPackage::Install(const HVString& location)
{
    HVLog::Write(HVLog::kInfo, "CInstallPackage::Install", u"Package %s", location);
    if (!HVUrl::IsDownload(location))
        return InstallFile(location, location);
    // Under the address's own file name, which the messages, the pin and a plain module's
    // copy keep.
    HVString name = HVUrl::FileName(location);
    if (!IsPlainName(name))
        name = u"Package.lwp";
    CTemporaryDownloadFile file;
    if (!file.Create(name))
        return FailPackage(TF(u"Can not create file %s.", file.Path()), location);
    const HVHttpReader::Outcome got =
        HVHttpReader::Download(location, file.Handle(), [](uint64_t, uint64_t) { return true; }, HVHttpReader::TimeoutMs());
    static const HVInstallDescription kNoPins;
    HVString reason;
    if (got.result == HVHttpReader::Result::HttpStatus)
        reason = TF(u"Server returned: %d %s", got.statusCode, got.statusText);
    else if (got.result != HVHttpReader::Result::Ok)
        reason = Translated(u"Internet error.");
    else if (!CDownloadAndRun::Accept(name, file, got, context_.description ? *context_.description : kNoPins))
        reason = Translated(u"The downloaded file is damaged or not the expected one.");
    if (!reason.IsEmpty())
        return FailPackage(reason, location);
    HVLog::Write(HVLog::kInfo, "CInstallPackage::Install", u"%s downloaded to %s", location, file.Path());
    return InstallFile(file.Path(), location);
}

bool CInstallPackage::InstallFile(const HVString& path, const HVString& location)
{
    const HVString archiveName = HVFileSystemPath::GetFileName(path);
    std::vector<uint8_t> bytes;
    if (!HVZipUnpacker::ReadArchive(path, bytes))
        return FailPackage(Translated(u"The package can't be read."), location);

    HVZipReader reader;
    if (!reader.Open(bytes.data(), bytes.size())) {
        // A module on its own is a plug-in that came without packing.
        if (bytes.size() > 2 && bytes[0] == 'M' && bytes[1] == 'Z') {
            if (!Confirm(archiveName))
                return true;
            return CInstallWAPlugin(context_.changes, context_.installFolder, context_.owner, !context_.interactive)
                .Install(path);
        }
        return Fail(TF(u"Failed to unzip file '%s'.", archiveName));
    }
    CPackageDescription description;
    bool overBudget = false;
    const bool described = ReadDescription(reader, description, overBudget);
    // Hundreds of root files with no description among the first of them: no plain archive,
    // but one made to cost its reader; refused before the question.
    if (overBudget)
        return Fail(TF(u"Failed to unzip file '%s'.", archiveName));
    if (!described || !description.HasActions()) {
        // Nothing says what to do with it: a plain archive, its files put into the program
        // folder as they lie in it, after the same question.
        HVLog::Write(HVLog::kInfo, "CInstallPackage::Install", u"%s has no description: installed as plain files",
                     archiveName);
        description = CPackageDescription();
        description.actions = Description::kUnzipDir;
    }
    // Without a name of its own the package is called by its file name, less the extension.
    const int32_t dot = archiveName.ReverseFind(u'.');
    const HVString name = !description.name.IsEmpty() ? description.name : dot > 0 ? archiveName.Left(dot) : archiveName;
    if (!CheckNames(description, name))
        return Fail(TF(u"Failed to unzip file '%s'.", refused_));
    if (!Confirm(name)) {
        HVLog::Write(HVLog::kInfo, "CInstallPackage::Install", u"%s: not confirmed", name);
        return true;
    }
    Status(u"Working...");

    wchar_t temp[MAX_PATH + 1] = {};
    ::GetTempPathW(MAX_PATH, temp);
    HVString unpacked = HVString(temp) + u"Install Wizard Package\\";
    HVFileSystem::MakeUniqueName(unpacked);
    // A package unpacked whole into the program folder keeps its folders there too.
    const bool keepFolders = description.Has(Description::kSaveDirStruct) || description.Has(Description::kUnzipDir);
    HVString error;
    if (!HVZipUnpacker::Unpack(reader, unpacked, keepFolders, error)) {
        HVLog::Write(HVLog::kWarning, "CInstallPackage::Install", u"%s", error);
        HVFileSystem::DeleteFolderTree(unpacked);
        return Fail(TF(u"Failed to unzip file '%s'.", archiveName));
    }

    bool closeProduct = false, startProduct = false, restartProduct = false, updateServices = false;
    for (const Description::FileEntry& entry : description.files) {
        closeProduct |= entry.Has(u"CLOSE_SN");
        startProduct |= entry.Has(u"START_SN");
        restartProduct |= entry.Has(u"RESTART_SN");
        updateServices |= entry.Has(u"UPDATE_SERVICELIST");
    }
    // First every target is checked and nothing done, so that a refusal leaves the machine as
    // it was; then for real, each target checked again as it is written.
    checking_ = true;
    bool ok = RunActions(description, unpacked, reader, name, keepFolders);
    checking_ = false;
    const bool wasRunning = ::FindWindowW(L"LWFrame", nullptr) != nullptr;
    const bool closed = ok && closeProduct && wasRunning && CloseProduct();
    ok = ok && RunActions(description, unpacked, reader, name, keepFolders);
    if (!ok && !refused_.IsEmpty())
        Fail(TF(u"Failed to unzip file '%s'.", refused_));

    if (ok && updateServices)
        CRunningProduct::Tell(CRunningProduct::kUpdateServiceList, name);
    const bool running = ::FindWindowW(L"LWFrame", nullptr) != nullptr;
    // A player that wouldn't close has the old files loaded: it is offered a restart as well.
    const bool stayedOpen = closeProduct && wasRunning && !closed;
    if (ok && (restartProduct || stayedOpen) && running && context_.interactive) {
        const HVString text = TF(u"%s must be restarted to complete installation of the package.\r\n\r\n",
                                 context_.productName) + Translated(u"Do you want to restart it now?");
        if (HVMessageBox::Show(context_.owner, text, Translated(u"Information"), MB_YESNO | MB_ICONQUESTION) == IDYES &&
            CloseProduct())
            RunProgram(context_.launcherPath, HVString(), SW_SHOWNORMAL, false, false);
    } else if (ok && (startProduct || closed) && !running && !context_.launcherPath.IsEmpty()) {
        RunProgram(context_.launcherPath, HVString(), SW_SHOWNORMAL, false, false);
    }

    if (!description.Has(Description::kDontCleanup))
        HVFileSystem::DeleteFolderTree(unpacked);
    HVLog::Write(HVLog::kInfo, "CInstallPackage::Install", u"%s: %s", name, ok ? u"installed" : u"failed");
    return ok;
}

bool CInstallPackage::RunActions(const CPackageDescription& description, const HVString& unpacked, HVZipReader& reader,
                                 const HVString& packageName, bool keepFolders)
{
    if (!RunPackageActions(description, unpacked, reader, packageName))
        return false;
    if (description.Has(Description::kNone))
        return true;
    for (const Description::FileEntry& entry : description.files) {
        if (!RunFileCommands(entry, unpacked, keepFolders))
            return false;
    }
    return true;
}

bool CInstallPackage::RunPackageActions(const CPackageDescription& description, const HVString& unpacked,
                                        HVZipReader& reader, const HVString& packageName)
{
    if (description.Has(Description::kUnzipDir) && !CopyEntry(unpacked, context_.installFolder, false))
        return false;
    for (const bool full : {true, false}) {
        if (!description.Has(full ? Description::kInstallSkin : Description::kInstallMiniSkin))
            continue;
        std::vector<uint8_t> mainXml;
        const int32_t main = reader.Find(u"main.xml");
        if (main >= 0)
            reader.Extract(static_cast<size_t>(main), mainXml);
        const HVString text = HVTextDecoder::Decode(std::string_view(reinterpret_cast<const char*>(mainXml.data()), mainXml.size()));
        if (main < 0 || !CopyContent(unpacked, SkinFolder(full, text, packageName)))
            return Fail(Translated(u"INSTALLSKIN action failed."));
    }
    if (description.Has(Description::kInstallTrackInfo) &&
        !CopyContent(unpacked, HVProductPaths::GetResourceFolder(context_.installFolder, HVProductPaths::Resource::TrackInfo)))
        return Fail(Translated(u"INSTALLTRACKINFO action failed."));
    if (description.Has(Description::kInstallMedia))
        TellMedia(unpacked, false);
    if (description.Has(Description::kPreviewMedia))
        TellMedia(unpacked, true);
    return true;
}

void CInstallPackage::TellMedia(const HVString& unpacked, bool preview)
{
    // Media to keep goes to the user's music, where the library looks anyway; a preview is
    // played from where it was unpacked.
    if (checking_)
        return;
    const HVString music = HVProductPaths::GetMusicFolder();
    std::vector<HVFileSystem::Entry> entries;
    HVFileSystem::EnumerateFolder(unpacked, entries);
    for (const HVFileSystem::Entry& entry : entries) {
        if (entry.isFolder || entry.name.EndsWithNoCase(u".xml"))
            continue;
        HVString file = unpacked + entry.name;
        if (!preview && !music.IsEmpty() && CopyEntry(file, music, false))
            file = music + entry.name;
        CRunningProduct::Tell(preview ? CRunningProduct::kPreviewMedia : CRunningProduct::kAddMedia, file);
    }
}

bool CInstallPackage::CopyContent(const HVString& unpacked, const HVString& targetFolder)
{
    std::vector<HVFileSystem::Entry> entries;
    if (!HVFileSystem::EnumerateFolder(unpacked, entries))
        return false;
    for (const HVFileSystem::Entry& entry : entries) {
        bool own = false;
        for (const HVString& name : ownFiles_)
            own = own || name.EqualsNoCase(entry.name.view());
        if (!own && !CopyEntry(unpacked + entry.name,
                               entry.isFolder ? HVFileSystemPath::AddBackslash(targetFolder) + entry.name : targetFolder, false))
            return false;
    }
    return true;
}

bool CInstallPackage::CopyEntry(const HVString& source, const HVString& targetFolder, bool move)
{
    const HVString folder = HVFileSystemPath::AddBackslash(targetFolder);
    const bool whole = HVFileSystem::FolderExists(source);
    // Into the program folder: it must hold the target as the file system resolves it. Elsewhere
    // (the Windows folder, the user's music) the word's own folder must.
    const HVString& program = context_.installFolder;
    const HVString root = folder.StartsWithNoCase(program.view()) ? program : folder;
    const HVString name = HVFileSystemPath::GetFileName(source);
    if (!HVContainedPath::Check(whole ? folder : folder + name, root))
        return Refuse(name);
    if (checking_ && !whole)
        return true;
    if (!checking_ && !HVFileSystem::FolderExists(folder)) {
        if (!HVFileSystem::MakeDirectoryTree(folder))
            return false;
        context_.changes.Note(InstallChange::Kind::FolderCreated, folder);
    }
    if (HVFileSystem::FolderExists(source)) {
        std::vector<HVFileSystem::Entry> entries;
        if (!HVFileSystem::EnumerateFolder(source, entries))
            return false;
        const HVString from = HVFileSystemPath::AddBackslash(source);
        for (const HVFileSystem::Entry& entry : entries) {
            if (!CopyEntry(from + entry.name, entry.isFolder ? folder + entry.name : folder, false))
                return false;
        }
        if (!checking_ && move && !HVFileSystem::DeleteFolderTree(from))
            return Fail(TF(u"Failed to move folder. Error: %d", static_cast<int32_t>(::GetLastError())));
        return true;
    }
    const HVString target = folder + name;
    const bool existed = HVFileSystem::Exists(target, false);
    context_.changes.NoteStarted(target, existed);
    DWORD error = 0;
    if (!HVFileSystem::CopyFileWhole(source, target, &error)) {
        if (error == ERROR_SHARING_VIOLATION || error == ERROR_LOCK_VIOLATION || error == ERROR_ACCESS_DENIED)
            return Fail(TF(u"Destination file is in use.\r\n%s", target));
        return false;
    }
    context_.changes.NoteFile(target, existed);
    if (move)
        HVFileSystem::DeleteFile(source);
    return true;
}

bool CInstallPackage::ApplyRegistryFile(const HVString& path)
{
    std::vector<uint8_t> bytes;
    if (!HVFileSystem::ReadFile(path, bytes))
        return false;
    const HVString text = HVTextDecoder::Decode(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    HKEY root = HKEY_CLASSES_ROOT;
    for (int32_t start = 0; start <= text.GetLength();) {
        int32_t end = text.Find(u'\n', start);
        if (end < 0)
            end = text.GetLength();
        HVString line = text.Mid(start, end - start);
        start = end + 1;
        line.Trim(u"\r\n\t ");
        if (line.IsEmpty() || line.StartsWith(u";"))
            continue;
        if (line == u"HKEY_CURRENT_CONFIG" || line == u"HKEY_USERS") {
            root = line == u"HKEY_USERS" ? HKEY_USERS : HKEY_CURRENT_CONFIG;
            continue;
        }
        if (const auto marker = CRegistryActionLine::RootMarker(line)) {
            root = *marker == CRegistryActionLine::Root::CurrentUser    ? HKEY_CURRENT_USER
                   : *marker == CRegistryActionLine::Root::LocalMachine ? HKEY_LOCAL_MACHINE
                                                                        : HKEY_CLASSES_ROOT;
            continue;
        }
        if (const auto parsed = CRegistryActionLine::Parse(Expand(line)))
            ApplyRegistryLine(*parsed, root, HVRegView::Native, context_.changes);
    }
    return true;
}

bool CInstallPackage::RunFileCommands(const CPackageDescription::FileEntry& entry, const HVString& unpacked,
                                      bool keepFolders)
{
    const HVString name = MemberName(entry.file);
    if (!HVZipReader::IsSafeName(name.view()))
        return Refuse(entry.file);
    HVString current = unpacked + (keepFolders ? name : HVFileSystemPath::GetFileName(name));
    const bool move = entry.Has(u"DELETE_ORIGINAL");
    const bool wait = !entry.Has(u"DONTWAIT");
    for (const Description::Command& command : entry.commands) {
        const HVString& word = command.word;
        const HVString param = Expand(command.param);
        const HVString folder = CopyFolder(word);
        if (!folder.IsEmpty() || word == u"COPY_DIRECTORY") {
            const HVString target = folder.IsEmpty() ? MemberName(param) : folder;
            if (target.IsEmpty() || !CopyEntry(current, target, move))
                return false;
            if (!HVFileSystem::FolderExists(current) || move)
                current = HVFileSystemPath::AddBackslash(target) + HVFileSystemPath::GetFileName(current);
        } else if (word == u"DELETE_DIRECTORY") {
            // Only what lies in the product's own folder as the file system resolves it: a
            // package has no business elsewhere, and a junction there may lead to anyone's files.
            const HVString target = HVFileSystemPath::NormalizeFolderPath(MemberName(param));
            if (!IsProgramFolderPath(param, false) || !HVContainedPath::Check(target, context_.installFolder))
                return Refuse(command.param);
            if (!checking_ && HVFileSystem::DeleteFolderTree(target))
                context_.changes.Note(InstallChange::Kind::FolderDeleted, target);
        } else if (checking_) {
            // Nothing runs on the walk that checks; a plug-in's copy is a target like any other.
            if (word == u"REG_PLUGIN" && !CopyEntry(current, context_.installFolder + u"Plugins\\", move))
                return false;
        } else if (word == u"REGISTER") {
            context_.changes.NoteRegistered(current, InstallChange::kRegisteredByExport);
            if (!CComponentRegistration::RegisterServer(current))
                return Fail(TF(u"Failed to register object.\r\n%s", current));
        } else if (word == u"EXECUTE") {
            int exitCode = -1;
            if (!RunProgram(current, param, SW_SHOWNORMAL, wait, true, &exitCode)) {
                const int32_t error = static_cast<int32_t>(::GetLastError());
                return Fail(param.IsEmpty() ? TF(u"Failed to start process.\r\n%s\r\nError: %d", current, error)
                                            : TF(u"Failed to start process.\r\n%s %s\r\nError: %d", current, param, error));
            }
        } else if (word == u"INSTALL") {
            const HVString parameters = HVString::Format(u"/Q /Install \"%s\"", current);
            int exitCode = -1;
            if (!RunProgram(context_.installFolder + u"PackageInstaller.exe", parameters, SW_SHOWNORMAL, true, true,
                            &exitCode) || exitCode != 0) {
                const int32_t error = exitCode != -1 ? exitCode : static_cast<int32_t>(::GetLastError());
                return Fail(TF(u"Failed to install using Package Installer.\r\nParameters: %s\r\nError: %d", parameters, error));
            }
        } else if (word == u"REG_WA_IN" || word == u"REG_WA_DSP" || word == u"REG_WA_VIS" || word == u"REG_WA_PLUGIN" ||
                   word == u"REG_PLUGIN") {
            // The plug-in installer copies it to its kind's folder and writes the record the
            // player finds it by; a product plug-in is whatever kind the file turns out to be.
            if (!CInstallWAPlugin(context_.changes, context_.installFolder, context_.owner, !context_.interactive)
                     .Install(current, PluginKind(word)))
                return false;
        } else if (word == u"REGISTRY") {
            const HVString lines = command.param.IsEmpty() ? current : unpacked + HVFileSystemPath::GetFileName(param);
            if (!ApplyRegistryFile(lines))
                HVLog::Write(HVLog::kWarning, "CInstallPackage::RunFileCommands", u"No registry lines in %s", lines);
        } else if (word != u"DELETE_ORIGINAL" && word != u"DONTWAIT" && word != u"START_SN" && word != u"CLOSE_SN" &&
                   word != u"RESTART_SN" && word != u"UPDATE_SERVICELIST") {
            HVLog::Write(HVLog::kWarning, "CInstallPackage::RunFileCommands", u"Unknown command '%s' for %s", word, entry.file);
        }
    }
    return true;
}

std::vector<HVString> CInstallPackage::InstallListed(const CInstallContext& context)
{
    std::vector<HVString> failed;
    const HVString list = context.description.GetText(u"/*/Installer/Packages");
    Context packageContext{context.changes,
                           context.installFolder,
                           context.product.GetDisplayName(),
                           context.product.GetInstallationKeyName(),
                           context.installFolder + context.product.GetLauncherName(),
                           context.owner,
                           !context.options.silent,
                           &context.progress,
                           &context.description};
    for (int32_t start = 0; start <= list.GetLength();) {
        int32_t end = list.Find(u';', start);
        if (end < 0)
            end = list.GetLength();
        HVString entry = list.Mid(start, end - start);
        start = end + 1;
        if (entry.Trim().IsEmpty())
            continue;
        const HVString location =
            HVUrl::IsDownload(entry) || HVFileSystemPath::IsAbsolute(entry.view()) ? entry : context.setupFolder + entry;
        context.progress.SetStatusText(TF(u"Installing package '%s'", HVFileSystemPath::GetFileName(location)));
        if (!CInstallPackage(packageContext).Install(location))
            failed.push_back(location);
    }
    return failed;
}
