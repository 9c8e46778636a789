#include "foundation/HVLog.h"

#include "RecordingLogger.h"

#include <gtest/gtest.h>

#include <string>

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
}   // namespace
