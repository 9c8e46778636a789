#include "foundation/win/HVSha256.h"

#include "foundation/win/HVFileSystem.h"

#include "TestPaths.h"

#include <gtest/gtest.h>

namespace
{
TEST(HVSha256Test, DigestOfAFileThroughItsHandle)
{
    const HVString folder(e2e::ScratchFolder(L"HVSha256").c_str());
    const struct { std::string bytes; const char* digest; } cases[] = {
        {"", "e3b0c44298fc1c149afbf4c8996fb92427ae41e4649b934ca495991b7852b855"},
        {"abc", "ba7816bf8f01cfea414140de5dae2223b00361a396177a9cb410ff61f20015ad"},
        {std::string(200000, 'a'), "2287d207f24a941ff3b56c04c8a25ad56b63e3023207b3bb5b4ac0c9869d74be"},
    };
    for (const auto& c : cases) {
        ASSERT_TRUE(HVFileSystem::WriteFile(folder + u"data.bin", c.bytes.data(), c.bytes.size()));
        const HVFileHandle file = HVFileSystem::OpenFile(folder + u"data.bin", GENERIC_READ, FILE_SHARE_READ, OPEN_EXISTING);
        const HVString digest = HVSha256::OfFile(file.Get());
        EXPECT_EQ(digest.ToUtf8(), c.digest) << c.bytes.size();
        EXPECT_TRUE(HVSha256::Matches(digest, HVString::FromUtf8(c.digest).MakeUpper() + u" "));
        EXPECT_FALSE(HVSha256::Matches(digest, u""));
    }
    EXPECT_EQ(HVSha256::OfFile(INVALID_HANDLE_VALUE).ToUtf8(), "");
    EXPECT_FALSE(HVSha256::Matches(u"", u""));
}
}
