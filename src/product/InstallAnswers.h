#pragma once

#include "foundation/HVString.h"

#include <optional>
#include <vector>

// The choices of a run that have no field of their own in InstallOptions, as an answer file
// ("/LoadInf") gives them and the wizard's pages make them. A choice that is absent was neither
// given nor made: the page's own default applies, and a saved answer file leaves it out.
struct InstallAnswers
{
    struct Shortcuts
    {
        bool startMenu = false;
        bool desktop = false;
        bool quickLaunch = false;
    };

    std::optional<HVString> language;   // a language code ("de"); "en" is the built-in English
    std::optional<bool> express;        // the setup-type page: Express or Custom
    std::optional<bool> portable;       // the custom setup-type page
    std::optional<HVString> folder;     // the destination the user settled on, or "/Dir"
    std::optional<Shortcuts> shortcuts;
    std::optional<std::vector<HVString>> fileTypes;  // extensions with their ".": ".mp3"
    std::optional<bool> runAtEnd;       // the finish page's "Run installed program now"
};
