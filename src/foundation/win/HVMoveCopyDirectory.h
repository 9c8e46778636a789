#pragma once

#include "foundation/HVString.h"

#include <vector>

// Moves or copies a whole folder tree as an ordered list of source and target pairs. The list
// can be built from a tree (AddTree) or item by item; Run makes every target folder first, so
// that no file waits for its folder, then moves or copies the files in list order. A move
// removes the source folders it emptied, deepest first. One failed item doesn't stop the
// others: Run reports false and GetFailedItems says which ones.
class HVMoveCopyDirectory
{
public:
    enum class Mode { Move, Copy };

    struct Item
    {
        HVString source;
        HVString target;
        bool isFolder = false;
    };

    explicit HVMoveCopyDirectory(Mode mode, bool replaceExisting = true)
        : mode_(mode), replaceExisting_(replaceExisting)
    {
    }

    // Adds the folder itself, then (recursively) its subfolders and files. False when the
    // source folder can't be read; what was read until then stays in the list.
    bool AddTree(const HVString& sourceFolder, const HVString& targetFolder);
    void AddItem(const HVString& source, const HVString& target, bool isFolder);

    bool Run();

    const std::vector<Item>& GetItems() const { return items_; }
    const std::vector<Item>& GetFailedItems() const { return failed_; }

private:
    Mode mode_;
    bool replaceExisting_;
    std::vector<Item> items_;
    std::vector<Item> failed_;
};
