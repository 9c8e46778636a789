#include "integration/win/CFileTypes.h"

#include "foundation/HVFileSystemPath.h"
#include "foundation/HVLog.h"
#include "foundation/HVTranslator.h"
#include "foundation/HVXMLDocument.h"
#include "integration/win/CInstallWAPlugin.h"
#include "product/HVInstallDescription.h"
#include "product/win/CProductIdentity.h"
#include "toolkit/win/HVMessageBox.h"

#include <memory>
#include <mutex>

namespace
{
std::mutex gLock;
std::unique_ptr<FileTypeModel> gModel;

}

HVString CFileTypes::FatalText(const HVString& path, const HVString& version)
{
    return HVTranslator::Translate(u"Failed to load file associations file.") + u"\r\n\r\n" +
           HVTranslator::Translate(u"Please reinstall the latest version of the program to fix this problem.\r\n\r\n") +
           HVTranslator::Translate(u"This is a fatal error, so the program must close.\r\n\r\n") +
           HVString::Format(HVTranslator::Translate(u"Path: %s\r\nVersion: %s").c_str(), path, version);
}

std::vector<FileTypeModel::InputPlugin> CFileTypes::InputPlugins()
{
    std::vector<FileTypeModel::InputPlugin> plugins;
    for (const CInstallWAPlugin::Record& record : CInstallWAPlugin::List(CInstallWAPlugin::Kind::Input)) {
        if (!record.extensions.IsEmpty())
            plugins.push_back({record.name, record.extensions});
    }
    return plugins;
}

const FileTypeModel* CFileTypes::Get(const CProductIdentity& product, const HVInstallDescription& description,
                                     const HVString& installFolder, HWND owner)
{
    std::lock_guard<std::mutex> lock(gLock);
    if (gModel)
        return gModel.get();
    const HVString path = product.FindFile(kFileName, installFolder);
    HVXMLDocument document;
    auto model = std::make_unique<FileTypeModel>();
    FileTypeModel::Overrides overrides{description.GetText(u"/*/Product/DefaultFileTypes"),
                                       description.GetText(u"/*/Product/DefaultAssocFileTypes"),
                                       FileTypeModel::ReadMime(description.GetDocument())};
    const FileTypeModel::LoadResult result = path.IsEmpty() || !document.Load(path)
                                                 ? FileTypeModel::LoadResult::NotParsed
                                                 : model->Load(document, overrides, InputPlugins());
    if (result != FileTypeModel::LoadResult::Loaded) {
        // A file found nowhere is named where the installed product keeps it: that is where a
        // support person would look.
        const HVString shown = path.IsEmpty() ? HVFileSystemPath::AddBackslash(installFolder) + kFileName : path;
        HVLog::Write(HVLog::kError, "CFileTypes::Get", u"Cannot load %s (result %d, version \"%s\")", shown,
                     static_cast<int32_t>(result), model->Version());
        HVMessageBox::Show(owner, FatalText(shown, model->Version()), HVTranslator::Translate(u"Information"),
                           MB_OK | MB_ICONERROR);
        return nullptr;
    }
    HVLog::Write(HVLog::kInfo, "CFileTypes::Get", u"%s version %s: %d file types, %d MIME types", path, model->Version(),
                 static_cast<int32_t>(model->KnownExtensions().size()),
                 static_cast<int32_t>(model->MimeAssociations().size()));
    gModel = std::move(model);
    return gModel.get();
}
