#pragma once

#include "foundation/HVString.h"

#include <cstdint>
#include <vector>

// One change that the install made to the machine, with what was there before, so that an
// uninstall can undo exactly what was done and give back what was replaced.
struct InstallChange
{
    enum class Kind
    {
        FileWritten,     // path: the file; existedBefore: it replaced a file
        FileDeleted,     // path: the file that was removed (now or at the next restart)
        FolderCreated,   // path: a folder that did not exist (with a backslash)
        FolderDeleted,   // path: a folder removed with its contents
        KeyCreated,      // path: "HKLM\..."/"HKCU\..." key that did not exist
        KeyDeleted,      // path: the key removed with everything below it
        ValueWritten,    // path: the key; name: the value; before: its old data when existedBefore
        ValueDeleted,    // path: the key; name: the value; before: its old data
        ShortcutCreated, // path: the ".lnk" file; name: its target; existedBefore: it replaced one
        // Noted before the work starts, so that a run ended half way still names what it may have
        // left: a file (or its temporary sibling) about to be written; existedBefore as above. A
        // FileWritten of the same path later confirms it.
        FileStarted,
        FontAdded,        // path: the font file; name: its value under the font table
        // path: the module; name: how, one of the kRegisteredBy names below
        ModuleRegistered,
        SharedFileCounted, // path: a file in a shared system folder; before: its SharedDLLs count before, empty if none
        InstallEnded,     // the run came to its end (path: "0" or the exit code); nothing follows
    };

    // How a module was registered, which decides how it is unregistered: by its own export, by the
    // system's RegSvr32, by the product's package installer; the audio driver by its description,
    // the server by its control program.
    static constexpr const char16_t* kRegisteredByExport = u"DllRegisterServer";
    static constexpr const char16_t* kRegisteredByRegSvr32 = u"RegSvr32";
    static constexpr const char16_t* kRegisteredByPackageInstaller = u"PackageInstaller";
    static constexpr const char16_t* kRegisteredAsDriver = u"WDMDriver";
    static constexpr const char16_t* kRegisteredAsService = u"Service";

    Kind kind = Kind::FileWritten;
    HVString path = {};
    HVString name = {};
    bool existedBefore = false;
    HVString before = {};
    // The change waits for the next restart or logon (a deferred file operation).
    bool deferred = false;
};

// Where noted changes go as they are made, so that they outlive the process (the install record
// file); an uninstall reads them back.
class IInstallChangeSink
{
public:
    virtual ~IInstallChangeSink() = default;
    // False when the change could not be kept (logged by the sink); the install goes on.
    virtual bool Append(const InstallChange& change) = 0;
};

// The one place where the engine notes every change it makes: files, folders, registry keys
// and values. The writers call Note right after the change took effect; nothing here touches
// the machine. Held by the wizard for the whole run.
class CInstallChangeLog
{
public:
    // Every later change also goes to `sink` (not owned; null to stop).
    void SetSink(IInstallChangeSink* sink) { sink_ = sink; }
    void Note(const InstallChange& change);
    // A change that is only a kind and a path (folders, keys).
    void Note(InstallChange::Kind kind, const HVString& path);
    void NoteFile(const HVString& path, bool existedBefore, bool deferred = false);
    void NoteDeleted(const HVString& path, bool deferred = false);
    // Before a file is written (FileStarted): a run ended during the write still names it.
    void NoteStarted(const HVString& path, bool existedBefore);
    // A module registered with the system, and how (ModuleRegistered).
    void NoteRegistered(const HVString& path, const HVString& how);

    const std::vector<InstallChange>& Changes() const { return changes_; }
    // How many changes of a kind were noted (for logs and tests).
    size_t Count(InstallChange::Kind kind) const;
    static const char16_t* KindName(InstallChange::Kind kind);

private:
    std::vector<InstallChange> changes_;
    IInstallChangeSink* sink_ = nullptr;
};
