#include "foundation/win/HVLoadLibrary.h"

#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"

HVModule HVLoadLibrary::Load(const HVString& path, DWORD* error)
{
    DWORD code = ERROR_INVALID_PARAMETER;
    HVModule module;
    if (!path.IsEmpty()) {
        // Altered search path only means something for a full path; a bare name is left to the
        // system's standard search.
        const DWORD flags = HVFileSystemPath::IsAbsolute(path.view()) ? LOAD_WITH_ALTERED_SEARCH_PATH : 0;
        module.Reset(::LoadLibraryExW(path.w(), nullptr, flags));
        code = module ? ERROR_SUCCESS : ::GetLastError();
    }
    if (error)
        *error = code;
    if (!module)
        HVLog::Write(HVLog::kError, "HVLoadLibrary", u"Loading %s failed, error: %d", path, code);
    return module;
}

HVModule HVLoadLibrary::LoadProductLibrary(const HVString& programFolder, const HVString& fileName, DWORD* error)
{
    HVString folder = HVFileSystemPath::AddBackslash(programFolder);
#ifdef _WIN64
    folder += u"x64\\";
#endif
    return Load(folder + fileName, error);
}

HVString HVLoadLibrary::CriticalErrorTitle() { return HVTranslator::Translate(u"Critical Error"); }

HVString HVLoadLibrary::CriticalErrorText(const HVString& module, const HVString& errorText)
{
    const HVString format = HVTranslator::Translate(
        u"The following module has failed to load:\r\n%s\r\n\r\nIt has reported the following error:\r\n\r\n%s"
        u"\r\n\r\nPlease reinstall the latest version of the program.");
    return HVString::Format(format.c_str(), module, errorText);
}

HVString HVLoadLibrary::SystemErrorText(DWORD error)
{
    wchar_t* buffer = nullptr;
    const DWORD length = ::FormatMessageW(FORMAT_MESSAGE_ALLOCATE_BUFFER | FORMAT_MESSAGE_FROM_SYSTEM |
                                              FORMAT_MESSAGE_IGNORE_INSERTS,
                                          nullptr, error, 0, reinterpret_cast<wchar_t*>(&buffer), 0, nullptr);
    HVString text;
    if (length > 0 && buffer)
        text = HVString(buffer, static_cast<int32_t>(length));
    if (buffer)
        ::LocalFree(buffer);
    text.TrimRight(u"\r\n ");
    if (text.IsEmpty())
        text = HVString::Format(u"Error %d", error);
    return text;
}
