#include "foundation/HVLog.h"
#include "foundation/HVLogTimer.h"

#include "RecordingLogger.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace
{
TEST(HVLogTest, LineCarriesLevelSourceAndFormattedMessageCutWhenLong)
{
    HVLog::SetLogger(nullptr);
    HVLog::Write(1, "A::B", u"%s", u"x");   // must not crash or format
    EXPECT_EQ(HVLog::GetLogger(), nullptr);
    RecordingLogger log;
    HVLog::Write(HVLog::kError, "HVFileSystem::DeleteFile", u"Error %d deleting existing file: %s", 5, u"C:\\x");
    const HVString junk(std::u16string(HVLog::kMaxMessageLength + 1000, u'x'));
    HVLog::Write(HVLog::kWarning, "A::B", u"%s", junk);
    HVLog::Write(HVLog::kWarning, "A::B", u"%s", junk.Left(HVLog::kMaxMessageLength));
    const auto lines = log.Lines();
    ASSERT_EQ(lines.size(), 3u);
    EXPECT_EQ(lines[0].level, 1);
    EXPECT_EQ(lines[0].Text(), "HVFileSystem::DeleteFile: Error 5 deleting existing file: C:\\x");
    const std::string kept(HVLog::kMaxMessageLength, 'x');
    EXPECT_EQ(lines[1].message, kept + " [... 1000 more characters cut]");
    EXPECT_EQ(lines[2].message, kept);
}

TEST(HVLogTest, TimerLogsStartAndFinish)
{
    RecordingLogger log;
    (void)HVLogTimer("RunProgram");   // no result set: the finish line names none
    {
        HVLogTimer timer("RunProgram");
        timer.SetResult(7);
    }
    const auto lines = log.Lines();
    ASSERT_EQ(lines.size(), 4u);
    EXPECT_EQ(lines[0].message, "Start");
    EXPECT_EQ(lines[1].message.rfind("Finish (", 0), 0u);
    EXPECT_EQ(lines[1].message.find("result"), std::string::npos);
    EXPECT_EQ(lines[1].message.substr(lines[1].message.size() - 4), " ms)");
    EXPECT_EQ(lines[3].message.rfind("Finish (result: 7) (", 0), 0u);
    for (const auto& line : lines)
        EXPECT_EQ(line.source, "RunProgram");
}
}   // namespace
