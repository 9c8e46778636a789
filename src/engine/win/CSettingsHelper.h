#pragma once

#include "engine/CSettingsTable.h"
#include "engine/win/CInstallContext.h"
#include "foundation/HVString.h"

#include <vector>

// Writes the product's first-run settings into "Properties" under the product's registry root,
// each under its product setting name, with the value a distributor preset in the install
// description or the built-in default (CSettingsTable). Identifier 5, shell integration, also
// registers or unregisters the product's shell extension at once.
class CSettingsHelper
{
public:
    // The context-menu handler the shell extension registers for all files; its presence
    // makes shell integration default to on.
    static constexpr const char16_t* kContextMenuHandlerKey = u"*\\shellex\\ContextMenuHandlers\\Sonora32 Shell Extension";
    static constexpr const char16_t* kShellExtensionFile = u"HVShellExt.dll";

    explicit CSettingsHelper(const CInstallContext& context);

    HVString KeyName(int32_t id) const { return CSettingsTable::KeyName(id); }
    HVString SettingName(int32_t id) const { return CSettingsTable::SettingName(id); }
    int32_t GetInteger(int32_t id) const;
    HVString GetText(int32_t id) const;

    // Stores one setting in the form the product reads it (a number given for a text setting
    // is written as decimal text; a text for a number must read as an integer). False, with a
    // log line, for an unknown identifier or a value that can't be stored.
    bool Set(int32_t id, int32_t value);
    bool Set(int32_t id, const HVString& value);

    // Every setting that "Properties" doesn't hold yet, with its value; settings already there
    // are the user's and stay. Returns the names written.
    std::vector<HVString> WriteDefaults();

    static bool IsShellExtensionRegistered();
    // "HVShellExt", with " x64" on 64-bit Windows: its name under "Shell Extensions".
    static HVString ShellExtensionName();

private:
    bool Store(int32_t id, const HVString& text, int32_t number);
    void ApplyShellIntegration(int32_t value);

    const CInstallContext& context_;
    CSettingsTable::Machine machine_;
};
