#pragma once

#include "foundation/HVString.h"
#include "foundation/win/HVUniqueResource.h"

// The file a download lands in: "HV Download (<n>).dat" in the temporary folder, made new with
// the first free number, so a file someone else put there is never written into or run. Held
// without write sharing from the first byte to the end of the run, and deleted when the object
// goes.
class CTemporaryDownloadFile
{
public:
    CTemporaryDownloadFile() = default;
    ~CTemporaryDownloadFile();
    CTemporaryDownloadFile(const CTemporaryDownloadFile&) = delete;
    CTemporaryDownloadFile& operator=(const CTemporaryDownloadFile&) = delete;

    // Makes the file, open for writing. False (logged) when no number is free or the
    // temporary folder can't be written; Path() then names the last name tried.
    bool Create();
    // Closes the writing handle and opens the same file for reading, still refusing writers
    // and deleters, so what is checked next is what will run. A program can be started from
    // it while this handle stays open.
    bool ReopenForReading();

    const HVString& Path() const { return path_; }
    HANDLE Handle() const { return file_.Get(); }

    static constexpr int32_t kMaxNumber = 1000;

private:
    HVString path_;
    HVFileHandle file_;
    bool created_ = false;
};
