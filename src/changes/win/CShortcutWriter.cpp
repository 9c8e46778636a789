#include "changes/win/CShortcutWriter.h"

#include "changes/CInstallChangeLog.h"
#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/win/HVComPtr.h"
#include "foundation/win/HVFileSystem.h"
#include "foundation/win/HVSha256.h"

#include <windows.h>
#include <shlobj.h>

#include <string>

namespace
{
std::wstring Wide(const HVString& text) { return std::wstring(text.w()); }

// The other link interface takes the system's code page.
std::string Narrow(const HVString& text)
{
    const std::wstring wide = Wide(text);
    const int size = ::WideCharToMultiByte(CP_ACP, 0, wide.c_str(), -1, nullptr, 0, nullptr, nullptr);
    std::string narrow(size > 0 ? static_cast<size_t>(size) : 1u, '\0');
    if (size > 0)
        ::WideCharToMultiByte(CP_ACP, 0, wide.c_str(), -1, narrow.data(), size, nullptr, nullptr);
    narrow.resize(std::char_traits<char>::length(narrow.c_str()));
    return narrow;
}

// Both link interfaces take the same settings; only the character type differs.
template <class Link, class Convert>
bool Fill(Link& link, const CShortcutWriter::Shortcut& shortcut, Convert convert)
{
    return SUCCEEDED(link.SetPath(convert(shortcut.target).c_str())) &&
           SUCCEEDED(link.SetArguments(convert(shortcut.arguments).c_str())) &&
           SUCCEEDED(link.SetDescription(convert(shortcut.description).c_str())) &&
           SUCCEEDED(link.SetWorkingDirectory(convert(shortcut.workingFolder).c_str())) &&
           SUCCEEDED(link.SetIconLocation(convert(shortcut.icon).c_str(), 0));
}
}

bool CShortcutWriter::Write(const Shortcut& shortcut)
{
    HVComPtr<IUnknown> object;
    HVComPtr<IShellLinkW> wide;
    HVComPtr<IShellLinkA> narrow;
    bool filled = false;
    if (SUCCEEDED(::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkW, wide.ReceiveVoid()))) {
        filled = Fill(*wide.Get(), shortcut, Wide);
        object = wide.As<IUnknown>(IID_IUnknown);
    } else if (SUCCEEDED(::CoCreateInstance(CLSID_ShellLink, nullptr, CLSCTX_INPROC_SERVER, IID_IShellLinkA,
                                            narrow.ReceiveVoid()))) {
        filled = Fill(*narrow.Get(), shortcut, Narrow);
        object = narrow.As<IUnknown>(IID_IUnknown);
    }
    const HVComPtr<IPersistFile> file = object.As<IPersistFile>(IID_IPersistFile);
    if (!filled || !file) {
        HVLog::Write(HVLog::kWarning, "CShortcutWriter::Write", u"%s -> %s %s: %s", shortcut.link, shortcut.target,
                     shortcut.arguments, object ? u"not filled" : u"no link object");
        return false;
    }
    const bool existed = HVFileSystem::Exists(shortcut.link, false);
    // A link an earlier run of this installation made is the install's own: nothing to keep.
    const bool ours = changes_.Noted(InstallChange::Kind::ShortcutCreated, shortcut.link);
    const HVString kept = existed && !ours ? Keep(shortcut.link) : HVString();
    changes_.NoteStarted(shortcut.link, existed);
    const bool saved = SUCCEEDED(file->Save(Wide(shortcut.link).c_str(), TRUE));
    HVLog::Write(saved ? HVLog::kInfo : HVLog::kWarning, "CShortcutWriter::Write", u"%s -> %s %s: %s", shortcut.link,
                 shortcut.target, shortcut.arguments, saved ? u"made" : u"not saved");
    if (!saved)
        return false;
    changes_.Note({.kind = InstallChange::Kind::ShortcutCreated, .path = shortcut.link, .name = shortcut.target,
                   .existedBefore = existed, .before = kept, .after = HVSha256::OfPath(shortcut.link)});
    return true;
}

HVString CShortcutWriter::Keep(const HVString& link)
{
    if (installFolder_.IsEmpty())
        return HVString();
    const HVString folder = installFolder_ + kKeptFolder;
    HVString kept = folder + HVFileSystemPath::GetFileName(link);
    if (!HVFileSystem::FolderExists(folder)) {
        changes_.Note(InstallChange::Kind::FolderCreated, folder);
        HVFileSystem::MakeDirectoryTree(folder);
    }
    if (!HVFileSystem::MakeUniqueName(kept))
        return HVString();
    changes_.NoteStarted(kept, false);
    if (!HVFileSystem::CopyFile(link, kept, true)) {
        HVLog::Write(HVLog::kWarning, "CShortcutWriter::Keep", u"%s could not be kept", link);
        return HVString();
    }
    changes_.NoteFile(kept, false);
    return kept;
}
