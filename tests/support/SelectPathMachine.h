#pragma once

// The machine the destination rules ask, described by plain fields (a Windows folder, Program
// Files, other programs' folders, the free space), that keeps the folders the rules asked it to
// create. Header-only, so the native core tests and the Windows test programs share it.
//
//   SelectPathMachine machine;
//   machine.freeBytes = 0;
//   EXPECT_EQ(CSelectPathRules::Check(u"E:\\Sonora", u"Sonora", machine).check, 7);

#include "install/CSelectPathRules.h"

#include <optional>
#include <vector>

class SelectPathMachine : public ISelectPathMachine
{
public:
    HVString windows = u"C:\\Windows";
    HVString programFiles = u"C:\\Program Files\\";
    std::vector<HVString> protectedFolders{u"D:\\Games\\Other Player\\", u"C:\\Tools\\Editor"};
    HVString remembered;
    HVString earlier;
    bool createOk = true;
    std::optional<uint64_t> freeBytes = uint64_t(1) << 40;   // none: can't be read
    mutable std::vector<HVString> created;

    HVString WindowsFolder() const override { return windows; }
    HVString ProgramFilesFolder() const override { return programFiles; }
    std::vector<HVString> ProtectedFolders() const override { return protectedFolders; }
    HVString RememberedFolder() const override { return remembered; }
    HVString EarlierInstallationFolder() const override { return earlier; }
    bool MakeDirectoryTree(const HVString& folder) override
    {
        created.push_back(folder);
        return createOk;
    }
    bool FreeBytes(const HVString&, uint64_t& bytes) const override
    {
        if (!freeBytes)
            return false;
        bytes = *freeBytes;
        return true;
    }
};
