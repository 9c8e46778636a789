#pragma once

#include "product/InstallOptions.h"

#include "foundation/HVString.h"

#include <vector>

// Reads the setup program's command line into InstallOptions. The line is split at every "/"
// and the first piece (the program's own path) is dropped; each other piece is matched, over
// the length of an option's name and without regard to case, against the option names in
// table order, and the first match wins. Pieces that match nothing are ignored, so parsing
// never fails: an unattended install with one mistyped switch still installs.
class CCommandLineParser
{
public:
    struct Option
    {
        const char16_t* name;
        const char16_t* help;  // one line for the "/?" box
    };

    // The options in matching order. The table's order matters: a piece is tested against
    // each name in turn, so a name must never be a prefix of a later one.
    static const std::vector<Option>& Options();

    // Returns the pieces that matched no option (for the log).
    static std::vector<HVString> Parse(const HVString& commandLine, InstallOptions& options);

    // The text of the "/?" box: one line per switch.
    static HVString HelpText();
};
