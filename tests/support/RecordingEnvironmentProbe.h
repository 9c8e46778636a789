#pragma once

// The machine the start-up checks ask, answering from plain fields and keeping the order of
// the questions ("rights running service browser cpu windows"). Header-only, so the native core
// tests and the Windows test programs share it.
//
//   RecordingEnvironmentProbe machine;
//   machine.rights = false;
//   EXPECT_EQ(CEnvironmentChecks::Run(machine), CEnvironmentChecks::Result::NoRights);
//   EXPECT_EQ(machine.asked, "rights");

#include "install/CEnvironmentChecks.h"
#include "install/IEnvironmentProbe.h"

#include <string>

class RecordingEnvironmentProbe : public IEnvironmentProbe
{
public:
    bool rights = true;
    bool productClosed = true;
    const char16_t* browser = u"11.0.0.0";
    const char16_t* minimum = u"5.0.0.0";
    uint32_t cpu = CEnvironmentChecks::kSSEBit | CEnvironmentChecks::kSSE2Bit;
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
