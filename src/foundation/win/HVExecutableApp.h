#pragma once

#include "foundation/win/HVApp.h"

#include "foundation/HVString.h"

// The application object of a program with a main window: knows its own file and folder and
// its command line, and runs the process's life: the framework's initialisation, the
// program's start-up, a message loop when start-up asks for one, and the exit code.
class HVExecutableApp : public HVApp
{
public:
    HVExecutableApp();

    // The whole life of the process; returns its exit code.
    int Run();

    const HVString& GetModulePath() const { return modulePath_; }
    // The program's folder, ending in a backslash.
    const HVString& GetModuleFolder() const { return moduleFolder_; }
    const HVString& GetCommandLine() const { return commandLine_; }
    void SetCommandLine(const HVString& commandLine) { commandLine_ = commandLine; }

    int GetExitCode() const { return exitCode_; }
    void SetExitCode(int code) { exitCode_ = code; }

protected:
    // The framework's own initialisation: module paths, COM, the crash handler. False ends
    // the process with the fatal-error exit code.
    virtual bool InitInstance();
    // The program's start-up. True: run the message loop until WM_QUIT; false: end at once.
    virtual bool Startup() = 0;
    virtual void ExitInstance() {}

private:
    HVString modulePath_;
    HVString moduleFolder_;
    HVString commandLine_;
    int exitCode_ = 0;
};
