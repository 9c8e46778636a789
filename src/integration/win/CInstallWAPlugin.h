#pragma once

#include "foundation/HVString.h"

#include <windows.h>

#include <cstdint>
#include <optional>
#include <vector>

class CInstallChangeLog;

// Installs an outside audio plug-in: a Winamp input or DSP plug-in, a VST effect (a VST 2 DLL
// or a ".vst3" module, kept with the DSP plug-ins) or a Girder remote-control plug-in. The file
// is loaded to learn its kind, name and version (only those entry points are called, and it is
// unloaded again), copied into the kind's folder under the program folder and recorded under
// HKEY_LOCAL_MACHINE "SOFTWARE\Halvard\Listenwell\Plugins\<kind>\<name>", where the player
// finds it, with a removal record under "Plugins\Uninstall\<name>". A refusal is told in an
// "Information" box; nothing is then copied or recorded.
class CInstallWAPlugin
{
public:
    enum class Kind { Any, Input, DSP, Visualization, RemoteControl };
    static constexpr DWORD kRecordVersion = 4;
    static constexpr int kRequiredInputVersion = 4;
    static constexpr const char16_t* kPluginsKey = u"SOFTWARE\\Halvard\\Listenwell\\Plugins\\";

    struct Record
    {
        HVString path;
        HVString pluginDescription;
        HVString fileDescription;
        HVString name;
        HVString extensions;  // input plug-ins: ";"-separated
    };

    // owner: the window that owns the message boxes; changes: where the copy and the record are
    // noted; quiet (silent runs): refusals go to the log only.
    CInstallWAPlugin(CInstallChangeLog& changes, const HVString& installFolder, HWND owner, bool quiet = false)
        : changes_(changes), installFolder_(installFolder), owner_(owner), quiet_(quiet)
    {
    }

    // expected: the kind the caller asks for; Any takes whatever the file turns out to be.
    bool Install(const HVString& path, Kind expected = Kind::Any);

    // The record of an installed plug-in, from the player's own list ("Plugins" under the
    // product's registry root) or else the machine's; none when it is missing or of another
    // layout.
    static std::optional<Record> Find(Kind kind, const HVString& name);
    // Every valid record of a kind, the player's own list first; a name once only.
    static std::vector<Record> List(Kind kind);
    // "Input", "DSP" or "RemoteControl": the key and the folder under "Plugins\".
    static const char16_t* KindFolder(Kind kind);

private:
    struct Store
    {
        HKEY root;
        HVString path;  // ends in "Plugins\"
    };
    static const std::vector<Store>& Stores();
    static std::optional<Record> Read(const Store& store, Kind kind, const HVString& name);

    struct Examined;
    bool Examine(const HVString& path, Kind expected, Examined& found);
    bool Refuse(const HVString& text);
    bool CopyAndRecord(const HVString& path, const Examined& found);

    CInstallChangeLog& changes_;
    HVString installFolder_;
    HWND owner_;
    bool quiet_;
};
