#pragma once

// A component the product needs on the machine before its files are copied (the DirectX
// helpers, the WebView2 runtime, the bundled media). The dependency step makes one of each for
// the run, asks it to install, and deletes it.
class IInstallDependency
{
public:
    virtual ~IInstallDependency() = default;
    // Brings the dependency in place when it is missing; true also when nothing had to be done.
    virtual bool Install() = 0;
    // Whether the installation may go on after Install failed.
    virtual bool ContinueOnFailure() const = 0;
};
