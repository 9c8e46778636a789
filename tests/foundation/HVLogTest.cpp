#include "foundation/HVLog.h"
#include "foundation/HVLogTimer.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
struct Line
{
    int level;
    std::string source;
    std::string message;
};

class RecordingLogger : public IHVLogger
{
public:
    RecordingLogger() { HVLog::SetLogger(this); }
    ~RecordingLogger() { HVLog::SetLogger(nullptr); }
    void Write(int level, const char* source, const HVString& message) override
    {
        lines.push_back({level, source, message.ToUtf8()});
    }
    std::vector<Line> lines;
};

TEST(HVLogTest, NothingIsWrittenWithoutALogger)
{
    HVLog::SetLogger(nullptr);
    HVLog::Write(1, "A::B", u"%s", u"x");   // must not crash or format
    EXPECT_EQ(HVLog::GetLogger(), nullptr);
}

TEST(HVLogTest, LineCarriesLevelSourceAndFormattedMessage)
{
    RecordingLogger log;
    HVLog::Write(HVLog::kError, "HVFileSystem::DeleteFile", u"Error %d deleting existing file: %s", 5, u"C:\\x");
    ASSERT_EQ(log.lines.size(), 1u);
    EXPECT_EQ(log.lines[0].level, 1);
    EXPECT_EQ(log.lines[0].source, "HVFileSystem::DeleteFile");
    EXPECT_EQ(log.lines[0].message, "Error 5 deleting existing file: C:\\x");
}

TEST(HVLogTest, TimerLogsStartAndFinish)
{
    RecordingLogger log;
    {
        HVLogTimer timer("RunProgram");
        EXPECT_EQ(timer.GetResult(), static_cast<int32_t>(0x8A33F231));
    }
    {
        HVLogTimer timer("RunProgram");
        timer.SetResult(7);
    }
    ASSERT_EQ(log.lines.size(), 4u);
    EXPECT_EQ(log.lines[0].message, "Start");
    EXPECT_EQ(log.lines[1].message.rfind("Finish (", 0), 0u);
    EXPECT_EQ(log.lines[1].message.find("result"), std::string::npos);
    EXPECT_EQ(log.lines[1].message.substr(log.lines[1].message.size() - 4), " ms)");
    EXPECT_EQ(log.lines[3].message.rfind("Finish (result: 7) (", 0), 0u);
    for (const auto& line : log.lines)
        EXPECT_EQ(line.source, "RunProgram");
}
}   // namespace
