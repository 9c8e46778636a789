#pragma once

#include "foundation/HVString.h"
#include "foundation/win/HVUniqueResource.h"

// The file a download lands in, in a folder made for this one download under the Windows
// folder's "Temp" (or, without one, the machine's program data) that only SYSTEM and
// Administrators can write: the user's own %TEMP% is writable by every unelevated process of
// the user, which could swap the file before it runs or plant a DLL beside it that the
// elevated program would load. The folder is made new with that security descriptor (a name
// that is taken, by anyone, is passed by), the file in it is held without write sharing from
// the first byte to the end of the run, and both are removed when the object goes.
class CTemporaryDownloadFile
{
public:
    CTemporaryDownloadFile() = default;
    ~CTemporaryDownloadFile();
    CTemporaryDownloadFile(const CTemporaryDownloadFile&) = delete;
    CTemporaryDownloadFile& operator=(const CTemporaryDownloadFile&) = delete;

    // Makes the folder and the file in it, open for writing: "HV Download (1).dat", or `name`
    // when the file must keep the name it has at its address. False (logged) when no folder
    // can be made; Path() then names what was tried last.
    bool Create(const HVString& name = HVString());
    // Closes the writing handle and opens the same file for reading, still refusing writers
    // and deleters, so what is checked next is what will run. A program can be started from
    // it while this handle stays open. Only SYSTEM and Administrators could reach the file in
    // between: the system starts no program from a file that is open for writing.
    bool ReopenForReading();

    const HVString& Path() const { return path_; }
    const HVString& Folder() const { return folder_; }
    HANDLE Handle() const { return file_.Get(); }

    // The folder's security descriptor: owned by Administrators, SYSTEM and Administrators
    // with full access, nothing inherited from above.
    static constexpr const wchar_t* kFolderSecurity = L"O:BAD:P(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)";
    static constexpr int32_t kMaxNumber = 1000;

private:
    bool CreateFolder();

    HVString folder_;
    HVString path_;
    HVFileHandle file_;
    bool created_ = false;
};
