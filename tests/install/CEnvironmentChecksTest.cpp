#include "install/CEnvironmentChecks.h"

#include <gtest/gtest.h>

#include <string>

namespace
{
using Result = CEnvironmentChecks::Result;

constexpr uint32_t kSSE = CEnvironmentChecks::kSSEBit;
constexpr uint32_t kSSE2 = CEnvironmentChecks::kSSE2Bit;

// A machine from a table row; it records which checks were asked, in order.
class TableMachine : public IEnvironmentProbe
{
public:
    bool rights = true;
    bool productClosed = true;
    const char16_t* browser = u"11.0.0.0";
    const char16_t* minimum = u"5.0.0.0";
    uint32_t cpu = kSSE | kSSE2;
    int32_t windows = 1012;
    std::string asked;

    bool HasWriteRights() override { return Ask("rights"), rights; }
    bool EnsureProductNotRunning() override { return Ask("running"), productClosed; }
    void StopProductService() override { Ask("service"); }
    HVString InstalledBrowserVersion() override { return Ask("browser"), browser; }
    HVString MinimumBrowserVersion() override { return minimum; }
    uint32_t ProcessorFeatures() override { return Ask("cpu"), cpu; }
    int32_t WindowsVersionCode() override { return Ask("windows"), windows; }

private:
    void Ask(const char* what) { asked += asked.empty() ? what : std::string(" ") + what; }
};

const char* const kAll = "rights running service browser cpu windows";
}

TEST(CEnvironmentChecks, OrderAndFirstFailureWins)
{
    const struct { const char* name; void (*setUp)(TableMachine&); Result expected; const char* asked; } cases[] = {
        {"all pass", [](TableMachine&) {}, Result::Passed, kAll},
        {"no rights", [](TableMachine& m) { m.rights = false; }, Result::NoRights, "rights"},
        {"no rights and no SSE2: rights are told", [](TableMachine& m) { m.rights = false, m.cpu = 0; }, Result::NoRights,
         "rights"},
        {"product stays", [](TableMachine& m) { m.productClosed = false; }, Result::ProductRunning, "rights running"},
        {"old browser", [](TableMachine& m) { m.browser = u"4.72.3110.0"; }, Result::BrowserTooOld,
         "rights running service browser"},
        {"SSE without SSE2, before the Windows version is looked at", [](TableMachine& m) { m.cpu = kSSE, m.windows = 1004; },
         Result::NoSSE2, "rights running service browser cpu"},
        {"SSE2 without SSE", [](TableMachine& m) { m.cpu = kSSE2; }, Result::NoSSE2,
         "rights running service browser cpu"},
        {"NT 4", [](TableMachine& m) { m.windows = 1004; }, Result::WindowsNotSupported, kAll},
        {"Windows 2000", [](TableMachine& m) { m.windows = 1005; }, Result::Passed, kAll},
        {"unknown Windows", [](TableMachine& m) { m.windows = 0; }, Result::WindowsNotSupported, kAll},
        {"code 2000", [](TableMachine& m) { m.windows = 2000; }, Result::WindowsNotSupported, kAll},
        {"code 1999", [](TableMachine& m) { m.windows = 1999; }, Result::Passed, kAll},
    };
    for (const auto& c : cases) {
        TableMachine machine;
        c.setUp(machine);
        EXPECT_EQ(CEnvironmentChecks::Run(machine), c.expected) << c.name;
        EXPECT_EQ(machine.asked, c.asked) << c.name;
    }
}

TEST(CEnvironmentChecks, BrowserVersionsCompareAsNumbers)
{
    const struct { const char16_t* installed; const char16_t* minimum; bool passes; } cases[] = {
        {u"5.0.0.0", u"5.0.0.0", true},     // equal passes
        {u"5.0", u"5.0.0.0", true},         // missing parts are zeros
        {u"4.9.9999.9", u"5.0.0.0", false},
        {u"10.0.0.0", u"9.0.0.0", true},    // not compared as text
        {u"9.11.19041.0", u"9.11.19041.1", false},
        {u"", u"", false},                  // absent: 1.0.0.0 against the default 5.0.0.0
        {u"1.0.0.0", u"", false}, {u"6.0", u"", true},
        {u"junk", u"1.0.0.0", true},        // unreadable installed version: 1.0.0.0
        {u"junk", u"1.0.0.1", false},
        {u"6.0", u"not a version", true},   // unreadable minimum: 5.0.0.0
        {u"4.0", u"not a version", false},
    };
    for (const auto& c : cases)
        EXPECT_EQ(CEnvironmentChecks::BrowserNewEnough(c.installed, c.minimum), c.passes)
            << HVString(c.installed).ToUtf8() << " vs " << HVString(c.minimum).ToUtf8();
}

