#pragma once

#include "changes/CInstallChangeLog.h"
#include "foundation/HVString.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

// The install record: the change log as text that an uninstall reads back. It is appended to a
// line at a time while the install works, so a run ended at any moment leaves every whole line
// readable; each line carries its own check, so a torn last line is known for what it is and
// never taken for a change.
class CInstallRecord
{
public:
    // The record's file name, in the install folder beside the uninstaller.
    static constexpr const char16_t* kFileName = u"Install Record.txt";

    // The first line of a run (UTF-8, with its line end). It names the user's folders that the
    // run may put shortcuts in, which an uninstall run by another account could not find.
    static std::string Header(const std::vector<HVString>& userFolders = {});
    // One change as one UTF-8 line, with its line end.
    static std::string EncodeLine(const InstallChange& change);

    struct Contents
    {
        std::vector<InstallChange> changes = {};
        // The user folders that the headers name, each once.
        std::vector<HVString> userFolders = {};
        // Lines whose check failed or that could not be read (a torn last line after a kill).
        size_t damagedLines = 0;
        // Why the record can't be trusted at all (no header, an unknown version, damage before
        // the last line); empty when it can.
        HVString problem = {};
        // Each run that wrote to the record: where its header begins in the text, its first
        // change, and whether it came to its end (an InstallEnded line) rather than being stopped.
        struct Run
        {
            size_t offset = 0;
            size_t firstChange = 0;
            bool ended = false;
        };
        std::vector<Run> runs = {};
    };
    static Contents Parse(std::string_view text);
    // The same, of a record file's bytes as read.
    static Contents Parse(const std::vector<uint8_t>& bytes)
    {
        return Parse(std::string_view(reinterpret_cast<const char*>(bytes.data()), bytes.size()));
    }
};
