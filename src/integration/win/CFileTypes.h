#pragma once

#include "foundation/HVString.h"
#include "integration/FileTypeModel.h"

#include <windows.h>

class CProductIdentity;
class HVInstallDescription;

// The run's one FileTypeModel, loaded from the product's "FileAssociations.xml" on first use
// and kept. A file that is missing or broken is fatal: the user is told, and the caller ends
// the installer.
class CFileTypes
{
public:
    static constexpr const char16_t* kFileName = u"FileAssociations.xml";

    // nullptr after the fatal message (shown to owner).
    static const FileTypeModel* Get(const CProductIdentity& product, const HVInstallDescription& description,
                                    const HVString& installFolder, HWND owner);

    // The fatal message's text for a file and the version text found in it.
    static HVString FatalText(const HVString& path, const HVString& version);

private:
    // The installed input plug-ins' records (CInstallWAPlugin) that report file types.
    static std::vector<FileTypeModel::InputPlugin> InputPlugins();
};
