#pragma once

#include "changes/CInstallChangeLog.h"
#include "foundation/HVString.h"
#include "foundation/win/HVUniqueResource.h"

#include <vector>

// The install record on disk: every change the log is told of, appended to "Install
// Record.txt" in the install folder as it is made, one line per change (CInstallRecord). A
// reinstall or an upgrade appends a run of its own to the record that is there, so the first
// "before" of every value (the user's own association, say) is never lost.
//
// The file is opened for appending only, and every line goes out in one WriteFile: whatever the
// call accepted belongs to the system's file cache, not to this process, so a process killed
// at any moment leaves every line it wrote, and at worst the one it was writing, torn (which
// the reader knows by its check). No flush per line is needed for that; Finish flushes once,
// for a machine that loses its power.
class CInstallRecordFile : public IInstallChangeSink
{
public:
    // The record in `installFolder` (with a backslash).
    static HVString PathIn(const HVString& installFolder);
    // Opens (or starts) the record in `installFolder` (with a backslash; the folder must exist)
    // and writes this run's header naming `userFolders`, then `earlier`: changes noted before the
    // folder was there. A record found there must be one this program reads (the run checks);
    // when it ends without a line end (a run ended by a kill tore its last line), the header
    // starts a line of its own, or it would be read as part of that torn line. False (and
    // logged) when the file can't be written; the install goes on without it.
    bool Open(const HVString& installFolder, const std::vector<InstallChange>& earlier,
              const std::vector<HVString>& userFolders, bool endsWithoutLineEnd);
    bool IsOpen() const { return file_.IsValid(); }
    const HVString& Path() const { return path_; }

    bool Append(const InstallChange& change) override;
    bool Append(std::span<const InstallChange> changes) override;
    // At the end of the run, after its InstallEnded: the flush, and the file is closed.
    void Finish();
    // The record in `installFolder` cut back to its first `size` bytes (0: the record goes),
    // once the run after them was undone. The file must not be open.
    static bool CutBack(const HVString& installFolder, uint64_t size);

private:
    bool Write(const std::string& bytes);

    HVString path_;
    HVFileHandle file_;
    bool failed_ = false;
};
