#pragma once

#include "foundation/IHVLogger.h"
#include "foundation/HVString.h"
#include "foundation/win/HVUniqueResource.h"

#include <mutex>

// Writes each log line to a file as it comes (UTF-8, one line per message: local time,
// thread, level, source, message), so that a log survives a crash that follows it. Other
// programs may read the file while it is written.
class HVFileLogger : public IHVLogger
{
public:
    HVFileLogger() = default;
    // Opens (creating or emptying) the file; false when it can't be written.
    bool Open(const HVString& path);
    bool IsOpen() const { return file_.IsValid(); }
    const HVString& GetPath() const { return path_; }

    void Write(int level, const char* source, const HVString& message) override;

    // "<folder>Install Wizard 2026-11-22 01-45-09.log": a dated name in the given folder.
    static HVString DatedName(const HVString& folder, const HVString& stem);

private:
    std::mutex mutex_;
    HVFileHandle file_;
    HVString path_;
};
