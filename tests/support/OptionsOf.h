#pragma once

// The run's choices a table row names in words ("upgrade earlier"): silent, upgrade, express,
// auto (install), portable, earlier (installation found); everything else as a fresh run has
// it. Header-only, so the native core tests and the Windows test programs share it.

#include "product/InstallOptions.h"

#include <string>
#include <utility>

inline InstallOptions OptionsOf(const std::string& flags)
{
    InstallOptions o;
    for (const auto& [word, flag] : {std::pair{"silent", &InstallOptions::silent}, {"upgrade", &InstallOptions::upgrade},
                                     {"express", &InstallOptions::express}, {"auto", &InstallOptions::autoInstall},
                                     {"portable", &InstallOptions::portable}, {"earlier", &InstallOptions::earlierInstallationFound}})
        o.*flag = flags.find(word) != std::string::npos;
    return o;
}
