// Strings to another process's command target: the sample product records what it receives.
#include "foundation/win/CPostString.h"
#include "foundation/win/HVCommandTarget.h"

#include "E2ESupport.h"
#include "RecordingLogger.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
std::wstring ScratchFile(const wchar_t* name)
{
    return e2e::ScratchFolder(L"PostString") + name;
}

HWND WaitForTarget(const e2e::RunningProduct& product)
{
    for (int i = 0; product.Started() && i < 500; ++i) {
        if (HWND target = HVCommandTarget::FindInProcess(product.ProcessId()))
            return target;
        ::Sleep(20);
    }
    return nullptr;
}

}   // namespace

TEST(CPostStringTest, StringsReachTheProductsCommandTargetThroughTheRingOrAFile)
{
    const std::wstring record = ScratchFile(L"Received.txt");
    ::DeleteFileW(record.c_str());
    e2e::RunningProduct product(false, record);
    const HWND target = WaitForTarget(product);
    ASSERT_NE(target, nullptr) << "the sample product shows no command target";
    wchar_t className[256] = {};
    ::GetClassNameW(target, className, 256);
    EXPECT_EQ(std::wstring(className).rfind(L"Halvard Command Target Window Class - Sonora0x", 0), 0u);

    RecordingLogger log;
    ASSERT_TRUE(CPostString::Post(target, 7, u"C:\\Music\\Café.mp3"));
    EXPECT_FALSE(log.Has(HVLog::kInfo, "Using file to send string"));
    // 8,192 characters are 16,384 bytes: too many for the ring, so they go through a file.
    const std::string big(8192, 'x');
    ASSERT_TRUE(CPostString::Post(target, 9, HVString::FromUtf8(big)));
    EXPECT_TRUE(log.Has(HVLog::kInfo, "Using file to send string"));
    EXPECT_TRUE(log.Has(HVLog::kInfo, "Finish (result: 1)"));

    const std::string received = e2e::WaitForLines(record, 2);
    EXPECT_EQ(received, "7|C:\\Music\\Caf\xC3\xA9.mp3\n9|" + big + "\n");
    EXPECT_FALSE(CPostString::Post(nullptr, 1, u"nobody"));
}
