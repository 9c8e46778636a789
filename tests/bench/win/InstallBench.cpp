// The install benchmark: InstallWizard.exe /Silent against Wine's own xcopy on the same
// generated program tree, in the same prefix, runs alternating, medians compared.
//   install_bench.exe [runs] [scale runs]
// Prints, besides a line per run on stderr:
//   install copy-step ours=<s> xcopy=<s> ratio=<ours/xcopy>
//   install whole ours=<s> xcopy=<s> ratio=<ours/xcopy>
//   install peak-working-set MB=<MB>
//   install scale files=20000 ratio-to-2000=<copy step 20,000 files / 2,000 files>
//   install note: ... (what was subtracted, and Wine's own share: xcopy's scale ratio, the
//   peak working sets of xcopy and of a bare window by the same measure)
#include "E2ESupport.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

namespace
{
constexpr uint64_t kTreeBytes = 100ull << 20;
// The slideshow's shortest play: the install page waits for it, so it is no cost of ours.
constexpr int kPromoFloorMs = 1000;
constexpr DWORD kRunLimitMs = 10 * 60 * 1000;

struct Setup
{
    std::wstring folder;
    std::wstring installFolder;
    std::wstring xcopyFolder;
    std::wstring log;
};

struct OursRun
{
    double wholeSeconds = 0;
    double copySeconds = 0;
    uint64_t peakWorkingSet = 0;
};

[[noreturn]] void Fail(const std::string& what)
{
    std::fprintf(stderr, "install bench: %s\n", what.c_str());
    std::exit(1);
}

double Median(std::vector<double> values)
{
    std::sort(values.begin(), values.end());
    const size_t n = values.size();
    return n == 0 ? 0 : n % 2 ? values[n / 2] : (values[n / 2 - 1] + values[n / 2]) / 2;
}

Setup MakeSetup(int files)
{
    Setup setup;
    const std::wstring name = L"InstallBench" + std::to_wstring(files);
    const std::wstring work = e2e::ScratchFolder(name + L"Out");
    setup.installFolder = work + L"Installed\\";
    setup.xcopyFolder = work + L"Xcopy\\";
    setup.log = work + L"Install.log";
    setup.folder = e2e::CopySampleSetupInstallingInto(name, setup.installFolder, kPromoFloorMs);
    if (setup.folder.empty())
        Fail("cannot copy the sample setup folder and point it at the install folder");
    const e2e::TreeShape shape{.files = files, .totalBytes = kTreeBytes};
    if (!e2e::WriteGeneratedTree(setup.folder + L"Listenwell\\", e2e::PlanTree(shape), 1))
        Fail("cannot write the generated tree");
    return setup;
}

// "CInstallSteps::CopyProgramFiles: Finish (result: 2013) (812 ms)"
double CopyStepSeconds(const std::wstring& log)
{
    const std::string text = e2e::ReadFileText(log);
    const std::string mark = "CInstallSteps::CopyProgramFiles: Finish (result: ";
    const size_t at = text.find(mark);
    if (at == std::string::npos)
        Fail("the log has no copy-step timing: " + e2e::Utf8(log));
    const size_t ms = text.find(") (", at + mark.size());
    return ms == std::string::npos ? 0 : std::atof(text.c_str() + ms + 3) / 1000.0;
}

e2e::RunResult Run(e2e::RunOptions options)
{
    options.watchDialogs = false;
    options.roundMs = 20;
    options.timeoutMs = kRunLimitMs;
    return e2e::ProgramDriver(std::move(options)).Run();
}

OursRun RunOurs(const Setup& setup)
{
    // Each run installs on a machine that never had the product, into a folder that isn't there.
    std::vector<std::wstring> problems;
    if (!e2e::ResetToFreshMachine(&problems) || !e2e::DeleteTree(setup.installFolder))
        Fail("cannot reset the machine");
    DeleteFileW(setup.log.c_str());
    e2e::RunOptions options;
    options.setupFolder = setup.folder;
    options.commandLine = L"/Silent /Log=" + setup.log;
    const e2e::RunResult run = Run(options);
    if (!run.ExitedWith(0))
        Fail("the silent install failed: " + run.Describe());
    return {run.seconds, CopyStepSeconds(setup.log), run.peakWorkingSetBytes};
}

e2e::RunResult RunXcopy(const Setup& setup)
{
    if (!e2e::DeleteTree(setup.xcopyFolder))
        Fail("cannot empty the xcopy folder");
    wchar_t system[MAX_PATH];
    const UINT length = GetSystemDirectoryW(system, MAX_PATH);
    e2e::RunOptions options;
    options.program = std::wstring(system, length) + L"\\xcopy.exe";
    std::wstring source = setup.folder + L"Listenwell";
    std::wstring target = setup.xcopyFolder.substr(0, setup.xcopyFolder.size() - 1);
    options.commandLine = L"\"" + source + L"\" \"" + target + L"\" /E /I /Q /Y";
    options.discardOutput = true;
    const e2e::RunResult run = Run(options);
    if (!run.ExitedWith(0))
        Fail("xcopy failed: " + run.Describe());
    return run;
}

// The peak working set of a program that only opens a window and closes it: under Wine most of
// a small GUI program's working set is Wine's own.
double BareWindowPeak()
{
    e2e::RunOptions options;
    options.program = e2e::ToolPath(L"ShowBox.exe");
    options.commandLine = L"/Window Bench";
    int rounds = 0;
    options.onPoll = [&](DWORD pid) {
        if (++rounds == 20)
            for (const e2e::WindowInfo& w : e2e::ListTopLevelWindows(pid, true))
                PostMessageW(w.hwnd, WM_CLOSE, 0, 0);
        return true;
    };
    return static_cast<double>(e2e::ProgramDriver(options).Run().peakWorkingSetBytes);
}
}

int wmain(int argc, wchar_t** argv)
{
    const int runs = argc > 1 ? _wtoi(argv[1]) : 5;
    const int scaleRuns = argc > 2 ? _wtoi(argv[2]) : 3;

    const Setup small = MakeSetup(2000);
    std::vector<double> oursCopy, oursWhole, xcopy;
    uint64_t peak = 0;
    uint64_t xcopyPeak = 0;
    for (int i = 0; i < runs; ++i) {
        const OursRun ours = RunOurs(small);
        const e2e::RunResult theirs = RunXcopy(small);
        std::fprintf(stderr, "install bench: 2000 files, run %d: ours %.3f s (copy step %.3f s), xcopy %.3f s\n", i + 1,
                     ours.wholeSeconds, ours.copySeconds, theirs.seconds);
        oursCopy.push_back(ours.copySeconds);
        oursWhole.push_back(ours.wholeSeconds - kPromoFloorMs / 1000.0);
        xcopy.push_back(theirs.seconds);
        peak = std::max(peak, ours.peakWorkingSet);
        xcopyPeak = std::max(xcopyPeak, theirs.peakWorkingSetBytes);
    }

    const Setup large = MakeSetup(20000);
    std::vector<double> scaleCopy, scaleXcopy;
    for (int i = 0; i < scaleRuns; ++i) {
        const OursRun ours = RunOurs(large);
        const e2e::RunResult theirs = RunXcopy(large);
        std::fprintf(stderr, "install bench: 20000 files, run %d: ours %.3f s (copy step %.3f s), xcopy %.3f s\n",
                     i + 1, ours.wholeSeconds, ours.copySeconds, theirs.seconds);
        scaleCopy.push_back(ours.copySeconds);
        scaleXcopy.push_back(theirs.seconds);
    }
    e2e::ResetToFreshMachine();
    const double windowPeak = BareWindowPeak();

    const double copy = Median(oursCopy);
    const double whole = Median(oursWhole);
    const double theirs = Median(xcopy);
    std::printf("install copy-step ours=%.3f xcopy=%.3f ratio=%.2f\n", copy, theirs, copy / theirs);
    std::printf("install whole ours=%.3f xcopy=%.3f ratio=%.2f\n", whole, theirs, whole / theirs);
    std::printf("install peak-working-set MB=%.1f\n", static_cast<double>(peak) / (1 << 20));
    std::printf("install scale files=20000 ratio-to-2000=%.2f\n", Median(scaleCopy) / copy);
    std::printf("install note: medians of %d runs (scale: %d); whole ours has the %d ms slideshow floor subtracted\n",
                runs, scaleRuns, kPromoFloorMs);
    // What Wine itself costs, so that a missed target can be told apart from a cost of ours.
    std::printf("install note: by the same measures, xcopy scale ratio-to-2000=%.2f, peak working set of xcopy "
                "MB=%.1f, of a bare window MB=%.1f\n",
                Median(scaleXcopy) / theirs, static_cast<double>(xcopyPeak) / (1 << 20), windowPeak / (1 << 20));
    for (const Setup* s : {&small, &large}) {
        e2e::DeleteTree(s->folder);
        e2e::DeleteTree(s->installFolder);
        e2e::DeleteTree(s->xcopyFolder);
    }
    return 0;
}
