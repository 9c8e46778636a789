#pragma once

#include "foundation/HVString.h"
#include "foundation/HVXMLDocument.h"

#include <cstdint>
#include <string_view>
#include <vector>

// What a package says about itself: its package-level action words and, file by file, the
// commands to carry out. Read from either layout of the description document (root element
// "LWPF"):
//   current   <Actions><Action>INSTALLSKIN</Action>...</Actions>
//             <FileEntry><File>a.dll</File><FileType>..</FileType>
//                        <Action Command="REG_WA_IN" Param=".."/>...</FileEntry>...
//   older     <Package><Name/><Version/><HasActions>1</HasActions><ActionOpt>NONE;DONT_CLEANUP</ActionOpt>
//                      <File1>a.dll</File1><File1Action1 Param="..">REGISTER</File1Action1>...</Package>
// Words are kept upper-cased, so every comparison after reading ignores case.
class CPackageDescription
{
public:
    // Package-level action words, as bits.
    enum Action : uint32_t
    {
        kUnzipDir = 1u << 0,
        kInstallSkin = 1u << 1,
        kInstallMiniSkin = 1u << 2,
        kInstallTrackInfo = 1u << 3,
        kInstallMedia = 1u << 4,
        kPreviewMedia = 1u << 5,
        kNone = 1u << 6,
        kDontCleanup = 1u << 7,
        kSaveDirStruct = 1u << 8,
    };

    struct Command
    {
        HVString word;   // upper-cased
        HVString param;  // as written, macros not yet expanded
    };
    struct FileEntry
    {
        HVString file;
        HVString fileType;
        std::vector<Command> commands;
        bool Has(std::u16string_view word) const;
    };

    // False when the text is no description of either layout (not well formed, or another root).
    bool Parse(const HVString& text);

    uint32_t actions = 0;
    HVString name;
    HVString version;
    std::vector<FileEntry> files;

    bool Has(Action action) const { return (actions & action) != 0; }
    // Whether the description asks for anything at all; a package without is a plain file.
    bool HasActions() const;
    // The bit of an action word (any case), 0 for a word that is not one.
    static uint32_t ActionBit(std::u16string_view word);
    // "[NameWithVersion]", "[PROGRAMPATH]" and the older "<PROGRAMPATH>" replaced, in any case.
    static HVString ExpandMacros(const HVString& text, const HVString& nameWithVersion, const HVString& programPath);

private:
    bool hasActionsKey_ = false;
    void AddActionWords(const HVString& text);
    void ReadFlatLayout(const HVXMLDocument& doc, HVXMLDocument::Elem package);
};
