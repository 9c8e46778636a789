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

// The sample product, started with "/Record=<file>", ended when the object goes.
class Product
{
public:
    explicit Product(const std::wstring& record)
    {
        std::wstring command = L"\"" + e2e::MediaFolder() + L"Listenwell\\Sonora.exe\" /Record=" + record;
        STARTUPINFOW si = {};
        si.cb = sizeof(si);
        started_ = ::CreateProcessW(nullptr, command.data(), nullptr, nullptr, FALSE, 0, nullptr, nullptr, &si, &pi_);
    }
    ~Product()
    {
        if (started_) {
            ::TerminateProcess(pi_.hProcess, 0);
            ::WaitForSingleObject(pi_.hProcess, 5000);
            ::CloseHandle(pi_.hProcess);
            ::CloseHandle(pi_.hThread);
        }
    }
    HWND WaitForTarget() const
    {
        for (int i = 0; started_ && i < 500; ++i) {
            if (HWND target = HVCommandTarget::FindInProcess(pi_.dwProcessId))
                return target;
            ::Sleep(20);
        }
        return nullptr;
    }

private:
    PROCESS_INFORMATION pi_ = {};
    bool started_ = false;
};

std::string WaitForLines(const std::wstring& file, int lines)
{
    std::string text;
    for (int i = 0; i < 500 && e2e::CountOf(text, "\n") < lines; ++i) {
        ::Sleep(20);
        text = e2e::ReadFileText(file);
    }
    return text;
}
}   // namespace

TEST(CPostStringTest, StringsReachTheProductsCommandTargetThroughTheRingOrAFile)
{
    const std::wstring record = ScratchFile(L"Received.txt");
    ::DeleteFileW(record.c_str());
    Product product(record);
    const HWND target = product.WaitForTarget();
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

    const std::string received = WaitForLines(record, 2);
    EXPECT_EQ(received, "7|C:\\Music\\Caf\xC3\xA9.mp3\n9|" + big + "\n");
    EXPECT_FALSE(CPostString::Post(nullptr, 1, u"nobody"));
}
