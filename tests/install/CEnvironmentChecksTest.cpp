#include "install/CEnvironmentChecks.h"

#include "RecordingEnvironmentProbe.h"

#include <gtest/gtest.h>

namespace
{
using Result = CEnvironmentChecks::Result;
using Machine = RecordingEnvironmentProbe;

constexpr uint32_t kSSE = CEnvironmentChecks::kSSEBit;
constexpr uint32_t kSSE2 = CEnvironmentChecks::kSSE2Bit;

const char* const kAll = "rights running service browser cpu windows";
}

TEST(CEnvironmentChecks, OrderAndFirstFailureWins)
{
    const struct { const char* name; void (*setUp)(Machine&); Result expected; const char* asked; } cases[] = {
        {"all pass", [](Machine&) {}, Result::Passed, kAll},
        {"no rights", [](Machine& m) { m.rights = false; }, Result::NoRights, "rights"},
        {"no rights and no SSE2: rights are told", [](Machine& m) { m.rights = false, m.cpu = 0; }, Result::NoRights, "rights"},
        {"product stays", [](Machine& m) { m.productClosed = false; }, Result::ProductRunning, "rights running"},
        {"old browser", [](Machine& m) { m.browser = u"4.72.3110.0"; }, Result::BrowserTooOld, "rights running service browser"},
        {"SSE without SSE2, before the Windows version is looked at", [](Machine& m) { m.cpu = kSSE, m.windows = 1004; },
         Result::NoSSE2, "rights running service browser cpu"},
        {"SSE2 without SSE", [](Machine& m) { m.cpu = kSSE2; }, Result::NoSSE2, "rights running service browser cpu"},
        {"NT 4", [](Machine& m) { m.windows = 1004; }, Result::WindowsNotSupported, kAll},
        {"Windows 2000", [](Machine& m) { m.windows = 1005; }, Result::Passed, kAll},
        {"unknown Windows", [](Machine& m) { m.windows = 0; }, Result::WindowsNotSupported, kAll},
        {"code 2000", [](Machine& m) { m.windows = 2000; }, Result::WindowsNotSupported, kAll},
        {"code 1999", [](Machine& m) { m.windows = 1999; }, Result::Passed, kAll},
    };
    for (const auto& c : cases) {
        Machine machine;
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

