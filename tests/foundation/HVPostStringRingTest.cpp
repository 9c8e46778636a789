#include "foundation/HVPostStringRing.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

namespace
{
std::vector<uint8_t> NewBlock()
{
    std::vector<uint8_t> block(HVPostStringRing::kBlockSize, 0xCD);
    HVPostStringRing::Prepare(block.data());
    return block;
}
}   // namespace

TEST(HVPostStringRingTest, RecordsComeOutInOrderAcrossTheWrap)
{
    std::vector<uint8_t> block = NewBlock();
    EXPECT_EQ(std::memcmp(block.data(), "HVPS", 4), 0);
    EXPECT_EQ(HVPostStringRing::FreeRoom(block.data()), HVPostStringRing::kRingSize - 1);
    // 3,000 characters a record: the ring wraps on the sixth, and every read frees its room.
    const HVString long1(std::u16string(3000, u'a'));
    int32_t type = 0;
    HVString text;
    for (int round = 0; round < 12; ++round) {
        const HVString sent = HVString::Format(u"%d:", round) + long1;
        ASSERT_TRUE(HVPostStringRing::Write(block.data(), round, sent)) << round;
        ASSERT_TRUE(HVPostStringRing::Read(block.data(), type, text)) << round;
        EXPECT_EQ(type, round);
        EXPECT_EQ(text, sent);
    }
    EXPECT_FALSE(HVPostStringRing::Read(block.data(), type, text));
    ASSERT_TRUE(HVPostStringRing::Write(block.data(), 5, HVString()));
    ASSERT_TRUE(HVPostStringRing::Read(block.data(), type, text));
    EXPECT_TRUE(text.IsEmpty());
}

TEST(HVPostStringRingTest, FullRingAndOversizedStringsAreRefused)
{
    std::vector<uint8_t> block = NewBlock();
    const HVString half(std::u16string(4000, u'b'));
    ASSERT_TRUE(HVPostStringRing::Write(block.data(), 1, half));
    ASSERT_TRUE(HVPostStringRing::Write(block.data(), 2, half));
    const size_t before = HVPostStringRing::FreeRoom(block.data());
    EXPECT_FALSE(HVPostStringRing::Write(block.data(), 3, half));
    EXPECT_EQ(HVPostStringRing::FreeRoom(block.data()), before);
    // 16,384 bytes or more never fit, even in an empty ring.
    EXPECT_FALSE(HVPostStringRing::Write(NewBlock().data(), 1, HVString(std::u16string(8192, u'c'))));
}

TEST(HVPostStringRingTest, DamagedBlocksAreSetUpAfreshOrEmptied)
{
    std::vector<uint8_t> block = NewBlock();
    ASSERT_TRUE(HVPostStringRing::Write(block.data(), 1, u"kept"));
    HVPostStringRing::Prepare(block.data());  // a good block stays as it is
    int32_t type = 0;
    HVString text;
    ASSERT_TRUE(HVPostStringRing::Read(block.data(), type, text));
    EXPECT_EQ(text, u"kept");

    ASSERT_TRUE(HVPostStringRing::Write(block.data(), 1, u"lost"));
    // The record after "kept" (8 + 8 bytes) has its byte count at ring offset 20: written over,
    // it claims more than the ring holds.
    block[12 + 20 + 1] = 0xFF;
    block[12 + 20 + 2] = 0xFF;
    EXPECT_FALSE(HVPostStringRing::Read(block.data(), type, text));
    EXPECT_EQ(HVPostStringRing::FreeRoom(block.data()), HVPostStringRing::kRingSize - 1);

    std::memset(block.data() + 4, 0x7F, 8);  // indexes out of range: the magic alone is not enough
    HVPostStringRing::Prepare(block.data());
    EXPECT_EQ(HVPostStringRing::FreeRoom(block.data()), HVPostStringRing::kRingSize - 1);
}
