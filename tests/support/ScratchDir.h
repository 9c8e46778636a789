#pragma once

// A folder of the running test's own under the system's temporary folder: empty when the
// object is made, removed with it. Header-only, so the native core tests and the Windows test
// programs share it; the Windows ones that need the build tree use e2e::ScratchFolder instead.
//
//   ScratchDir dir;
//   doc.Load(dir.Write("Install.xml", "<HVIC version='1.0'/>"));

#include "foundation/HVString.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>
#include <vector>

class ScratchDir
{
public:
    ScratchDir()
    {
        // Several build trees may run the same tests at once: the seed keeps their folders apart.
        const ::testing::UnitTest& unit = *::testing::UnitTest::GetInstance();
        dir_ = std::filesystem::temp_directory_path() /
               ("iw-" + std::to_string(unit.random_seed()) + "-" + unit.current_test_info()->test_suite_name() + "-" +
                unit.current_test_info()->name());
        std::error_code ignored;
        std::filesystem::remove_all(dir_, ignored);
        std::filesystem::create_directories(dir_);
    }
    ~ScratchDir()
    {
        std::error_code ignored;
        std::filesystem::remove_all(dir_, ignored);
    }
    ScratchDir(const ScratchDir&) = delete;
    ScratchDir& operator=(const ScratchDir&) = delete;

    const std::filesystem::path& Dir() const { return dir_; }
    // The folder as the product takes it, ending in a separator.
    HVString Folder() const { return PathOf(dir_ / ""); }
    HVString Path(const std::string& name) const { return PathOf(dir_ / name); }
    HVString Write(const std::string& name, const std::string& bytes) const
    {
        std::ofstream(dir_ / name, std::ios::binary) << bytes;
        return Path(name);
    }

    // The names in a folder, for the product's code that is handed a folder lister; false when
    // the folder can't be read.
    static bool ListNames(const HVString& folder, std::vector<HVString>& names)
    {
        std::error_code error;
        std::filesystem::directory_iterator it(std::filesystem::path(folder.view()), error);
        if (error)
            return false;
        for (const auto& entry : it)
            names.push_back(HVString(entry.path().filename().u16string()));
        return true;
    }

    static HVString PathOf(const std::filesystem::path& p)
    {
#ifdef _WIN32
        return HVString(p.wstring().c_str());
#else
        return HVString::FromUtf8(p.string());
#endif
    }

private:
    std::filesystem::path dir_;
};
