#include "integration/win/RegisterDefaultPrograms.h"

#include "changes/win/CRegistryWriter.h"
#include "foundation/HVSystemIdentity.h"
#include "foundation/HVTranslator.h"
#include "integration/FileTypeModel.h"
#include "integration/win/CShellContext.h"
#include "product/win/CProductIdentity.h"
#include "product/win/CProductIdentity.h"

void RegisterDefaultPrograms(const ShellRegistration& record, const CShellContext& context)
{
    const int32_t os = HVSystemIdentity::Current().GetCode();
    if (os < HVSystemIdentity::kWindowsVista || os > 1999)
        return;
    const HVString name = context.product.GetDisplayName();
    const HVString client = u"Software\\Clients\\Media\\" + name;
    CInstallChangeLog& changes = context.changes;
    auto set = [&](const HVString& path, const HVString& value, const HVString& data) {
        CRegistryWriter key(changes, HKEY_LOCAL_MACHINE, path);
        if (key.Open())
            key.SetString(value, data);
    };
    set(client, HVString(), name);
    set(client + u"\\shell\\open\\command", HVString(),
        u"\"" + context.installFolder + context.product.GetMainProgramName() + u"\"");
    set(client + u"\\DefaultIcon", HVString(), context.product.FindArt(context.installFolder, u"Application.ico"));

    const HVString capabilities = client + u"\\Capabilities";
    {
        CRegistryWriter key(changes, HKEY_LOCAL_MACHINE, capabilities);
        if (!key.Open())
            return;
        key.SetString(u"ApplicationName", name);
        // Windows shows it in Default Programs, in the user's language.
        key.SetString(u"ApplicationDescription",
                      HVString::Format(HVTranslator::Translate(u"%s plays and organizes your music, videos and pictures.").c_str(), name));
        // Written anew: types the user no longer chose must not stay offered as ours.
        key.DeleteSubKeyTree(u"FileAssociations");
    }
    {
        CRegistryWriter key(changes, HKEY_LOCAL_MACHINE, capabilities + u"\\FileAssociations");
        if (key.Open())
            for (const HVString& extension : FileTypeModel::SplitList(record.fileTypes))
                key.SetString(extension, FileTypeModel::ProgIdFor(extension, record.productWithVersion, record.mimeExtension));
    }
    {
        CRegistryWriter key(changes, HKEY_LOCAL_MACHINE, capabilities + u"\\URLAssociations");
        if (key.Open())
            for (const HVString& protocol : FileTypeModel::SplitList(record.protocols))
                key.SetString(protocol.Mid(1), protocol.Mid(1));  // the protocol's key is its own ProgID
    }
    {
        CRegistryWriter key(changes, HKEY_LOCAL_MACHINE, capabilities + u"\\MimeAssociations");
        if (key.Open())
            for (const FileTypeModel::MimeAssociation& mime : context.fileTypes.MimeAssociations())
                key.SetString(mime.type,
                              FileTypeModel::ProgIdFor(mime.extension, record.productWithVersion, record.mimeExtension));
    }
    set(u"Software\\RegisteredApplications", name, capabilities);
}
