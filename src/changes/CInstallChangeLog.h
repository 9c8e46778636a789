#pragma once

#include "foundation/HVString.h"

#include <cstdint>
#include <initializer_list>
#include <span>
#include <vector>

// One change that the install made to the machine, with what was there before and what the
// install put there, so that an uninstall undoes exactly what was done, gives back what was
// replaced, and leaves alone whatever someone changed since.
struct InstallChange
{
    enum class Kind
    {
        FileWritten,     // path: the file; existedBefore: it replaced a file; after: its digest outside the
                         // install folder
        FileDeleted,     // path: the file that was removed (now or at the next restart)
        FolderCreated,   // path: a folder that did not exist (with a backslash)
        FolderDeleted,   // path: a folder removed with its contents
        KeyCreated,      // path: "HKLM\..."/"HKCU\..." key that did not exist (each level made)
        KeyDeleted,      // path: the key removed with everything below it
        ValueWritten,    // path: the key; name: the value; before: its old data when existedBefore; after: the data written
        ValueDeleted,    // path: the key; name: the value; before: its old data; after: empty (no value)
        // path: the ".lnk" file; name: its target; after: its digest; existedBefore: it replaced
        // one, kept at the path in before
        ShortcutCreated,
        // Noted before the work starts, so that a run ended half way still names what it may have
        // left: a file (or its temporary sibling) about to be written; existedBefore as above. A
        // FileWritten of the same path later confirms it.
        FileStarted,
        FontAdded,        // path: the font file; name: its value under the font table
        // path: the module; name: how, one of the kRegisteredBy names below
        ModuleRegistered,
        // path: a file in a shared system folder; before: its SharedDLLs count before, empty if
        // none; after: the count written
        SharedFileCounted,
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

    // A file's successor is copied beside it under its name with kTemporarySuffix; what the
    // install replaces or removes is kept beside it with kKeptSuffix until the install ends well.
    static constexpr const char16_t* kTemporarySuffix = u".iwnew";
    static constexpr const char16_t* kKeptSuffix = u".iwold";

    Kind kind = Kind::FileWritten;
    HVString path = {};
    HVString name = {};
    bool existedBefore = false;
    HVString before = {};
    // What the install put there, in the form of `before`: an uninstall gives back `before` only
    // while the machine still holds this. Records of the first format have none (afterKnown
    // false), and their changes are undone only in places that are the product's own.
    HVString after = {};
    bool afterKnown = true;
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
    // Several changes noted at one moment, kept together (one write where the sink can).
    virtual bool Append(std::span<const InstallChange> changes)
    {
        bool kept = true;
        for (const InstallChange& change : changes)
            kept = Append(change) && kept;
        return kept;
    }
};

// The one place where the engine notes every change it makes: files, folders, registry keys
// and values. The writers call Note before they make the change (a file's confirmation follows
// its FileStarted once it is whole): a run ended between the note and the change leaves a
// note that an uninstall checks against the machine, never a change that no uninstall finds.
// Nothing here touches the machine. Held by the install run for its whole length.
class CInstallChangeLog
{
public:
    // Every later change also goes to `sink` (not owned; null to stop).
    void SetSink(IInstallChangeSink* sink) { sink_ = sink; }
    void Note(const InstallChange& change);
    // Changes noted at one moment (a file and its temporary sibling), kept in one go.
    void Note(std::initializer_list<InstallChange> changes);
    // A change that is only a kind and a path (folders, keys).
    void Note(InstallChange::Kind kind, const HVString& path);
    // after: the file's digest where an uninstall must check it (outside the install folder).
    void NoteFile(const HVString& path, bool existedBefore, bool deferred = false, const HVString& after = {});
    void NoteDeleted(const HVString& path, bool deferred = false);
    // Before a file is written (FileStarted): a run ended during the write still names it.
    void NoteStarted(const HVString& path, bool existedBefore);
    // A module registered with the system, and how (ModuleRegistered).
    void NoteRegistered(const HVString& path, const HVString& how);

    const std::vector<InstallChange>& Changes() const { return changes_; }
    // The changes that the earlier runs of this installation noted (its record as it was found),
    // so that a reinstall does not do twice what belongs to the installation once.
    void SetEarlier(std::vector<InstallChange> earlier) { earlier_ = std::move(earlier); }
    const std::vector<InstallChange>& Earlier() const { return earlier_; }
    // Noted by this run or an earlier run of this installation: a change of `kind` on `path`.
    bool Noted(InstallChange::Kind kind, const HVString& path) const;
    // How many changes of a kind were noted (for logs and tests).
    size_t Count(InstallChange::Kind kind) const;
    static const char16_t* KindName(InstallChange::Kind kind);

private:
    std::vector<InstallChange> earlier_;
    std::vector<InstallChange> changes_;
    IInstallChangeSink* sink_ = nullptr;
};
