#include "product/CSetupFolders.h"

void CSetupFolders::Apply(const HVString& setupFolder, const FileExists& fileExists, InstallOptions& options)
{
    HVString folder = setupFolder;
    if (!folder.IsEmpty() && !folder.EndsWith(u"\\"))
        folder += u'\\';
    options.supportFolder = folder + u"Support\\";
    options.libraryFolder = folder + u"Library\\";
    options.installDescriptionPath = folder + u"Install.xml";
    if (!fileExists(options.installDescriptionPath))
        options.installDescriptionPath = folder + u"..\\Install.xml";
}
