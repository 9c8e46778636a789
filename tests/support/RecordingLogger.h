#pragma once

// The test programs' logger: while it lives it is the process-wide logger and keeps every
// line written, so that a test can say which lines a call wrote. Header-only, so the native
// core tests and the Windows test programs share it.
//
//   RecordingLogger log;
//   HVFileSystem::DeleteFile(path);
//   EXPECT_TRUE(log.Has(HVLog::kError, "deleting existing file"));

#include "foundation/HVLog.h"
#include "foundation/IHVLogger.h"

#include <mutex>
#include <string>
#include <vector>

class RecordingLogger : public IHVLogger
{
public:
    struct Line
    {
        int level = 0;
        std::string source;
        std::string message;   // UTF-8

        // "source: message"
        std::string Text() const { return source + ": " + message; }
    };

    RecordingLogger() { HVLog::SetLogger(this); }
    ~RecordingLogger() { HVLog::SetLogger(nullptr); }
    RecordingLogger(const RecordingLogger&) = delete;
    RecordingLogger& operator=(const RecordingLogger&) = delete;

    void Write(int level, const char* source, const HVString& message) override
    {
        const std::lock_guard lock(mutex_);
        lines_.push_back({level, source, message.ToUtf8()});
    }

    // A copy, so that lines written meanwhile by another thread don't disturb the reader.
    std::vector<Line> Lines() const
    {
        const std::lock_guard lock(mutex_);
        return lines_;
    }
    std::vector<std::string> Texts() const
    {
        std::vector<std::string> texts;
        for (const Line& line : Lines())
            texts.push_back(line.Text());
        return texts;
    }
    // Whether a line of this level (any level: 0) holds `part` in its source or message.
    bool Has(int level, const std::string& part) const
    {
        for (const Line& line : Lines())
            if ((level == 0 || line.level == level) && line.Text().find(part) != std::string::npos)
                return true;
        return false;
    }
    void Clear()
    {
        const std::lock_guard lock(mutex_);
        lines_.clear();
    }

private:
    mutable std::mutex mutex_;
    std::vector<Line> lines_;
};
