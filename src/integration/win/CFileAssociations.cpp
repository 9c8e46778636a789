#include "integration/win/CFileAssociations.h"

#include "changes/win/CRegistryWriter.h"
#include "foundation/HVLog.h"
#include "integration/FileTypeModel.h"
#include "integration/win/CShellContext.h"

namespace
{
const char16_t* const kFileExts = u"Software\\Microsoft\\Windows\\CurrentVersion\\Explorer\\FileExts\\";

// The value as text: strings as stored, a DWORD as its decimal number. False when missing
// or of another type.
bool ReadText(const HVRegKey& key, const HVString& name, HVString& text)
{
    DWORD number = 0;
    if (key.QueryString(name, text))
        return true;
    if (!key.QueryDWORD(name, number))
        return false;
    text = HVString::Format(u"%u", static_cast<uint32_t>(number));
    return true;
}
}

void CFileAssociations::RegisterChosen()
{
    const std::vector<HVString> chosen = FileTypeModel::SplitList(record_.fileTypes);
    for (const HVString& extension : chosen)
        AssociateExtension(extension, HVString());
    // The product's own MIME type is no choice of the user's: without it what a browser hands
    // over under that type would find no opener.
    if (!record_.mimeExtension.IsEmpty() && !FileTypeModel::ContainsNoCase(chosen, record_.mimeExtension))
        AssociateExtension(record_.mimeExtension, HVString());
    for (const HVString& protocol : FileTypeModel::SplitList(record_.protocols))
        RegisterProtocol(protocol.Mid(1));  // the list's items come with a "." in front
}

void CFileAssociations::KeepForeign(CRegistryWriter& key, const HVString& name, const HVString& value) const
{
    const HVString backup = FileTypeModel::BackupValueName(record_.productWithVersion, name);
    HVString present;
    if (key.Key().QueryString(backup, present))
        return;
    key.SetString(backup, value);
}

void CFileAssociations::KeepIfForeign(CRegistryWriter& key, const HVString& name, const HVString& value) const
{
    HVString present;
    if (key.Key().QueryString(name, present) && present != value &&
        FileTypeModel::IsForeign(present, record_.productWithVersion))
        KeepForeign(key, name, present);
}

void CFileAssociations::SetKeepingForeign(CRegistryWriter& key, const HVString& name, const HVString& value) const
{
    KeepIfForeign(key, name, value);
    if (value.IsEmpty())
        key.DeleteValue(name);
    else
        key.SetString(name, value);
}

void CFileAssociations::RegisterMimeTypes(const HVString& extension)
{
    for (const FileTypeModel::MimeAssociation& mime : context_.fileTypes.MimeAssociations()) {
        if (!mime.extension.EqualsNoCase(extension))
            continue;
        CRegistryWriter key(context_.changes, HKEY_CLASSES_ROOT, u"Mime\\Database\\Content Type\\" + mime.type);
        if (!key.Open())
            continue;
        SetKeepingForeign(key, u"Extension", extension);
        // A CLSID there hands the type to another program's handler, whatever "Extension" says.
        HVString clsid;
        if (key.Key().QueryString(u"CLSID", clsid)) {
            KeepForeign(key, u"CLSID", clsid);
            key.DeleteValue(u"CLSID");
        }
    }
}

void CFileAssociations::AssociateExtension(const HVString& given, const HVString& progId)
{
    HVString extension = HVString(given).Trim();
    if (extension.IsEmpty())
        return;
    if (extension[0] != u'.')
        extension.Insert(0, u".");
    RegisterMimeTypes(extension);
    // ".dat" is far too common a name to claim for a media file.
    if (extension.EqualsNoCase(u".dat"))
        return;
    const HVString id =
        progId.IsEmpty() ? FileTypeModel::ProgIdFor(extension, record_.productWithVersion, record_.mimeExtension) : progId;

    CRegistryWriter key(context_.changes, HKEY_CLASSES_ROOT, extension);
    if (!key.Open())
        return;
    HVString present;
    if (ReadText(key.Key(), HVString(), present) && present != id &&
        FileTypeModel::IsForeign(present, record_.productWithVersion))
        KeepForeign(key, HVString(), present);
    if (id.IsEmpty())
        key.DeleteValue(HVString());
    else
        key.SetString(HVString(), id);
    if (const HVString perceived = PerceivedType(extension); !perceived.IsEmpty())
        SetKeepingForeign(key, u"PerceivedType", perceived);
    if (const HVString content = ContentType(extension); !content.IsEmpty())
        SetKeepingForeign(key, u"Content Type", content);
    OverridePerUserChoice(extension, id);
    HVLog::Write(HVLog::kDetail, "CFileAssociations::AssociateExtension", u"%s -> %s (was %s)", extension, id, present);
}

void CFileAssociations::OverridePerUserChoice(const HVString& extension, const HVString& progId)
{
    // Explorer's own record of the user's choice wins over HKEY_CLASSES_ROOT; it is only
    // corrected where the user has one, never made.
    CRegistryWriter key(context_.changes, HKEY_CURRENT_USER, kFileExts + extension);
    if (!key.OpenExisting())
        return;
    HVString present;
    const bool isString = key.Key().QueryString(u"Progid", present);
    if (isString && !FileTypeModel::IsForeign(present, record_.productWithVersion))
        return;
    if (isString)
        KeepForeign(key, u"Progid", present);
    if (progId.IsEmpty())
        key.DeleteValue(u"Progid");
    else
        key.SetString(u"Progid", progId);
}

void CFileAssociations::RegisterProtocol(const HVString& protocol)
{
    if (protocol.IsEmpty())
        return;
    CRegistryWriter key(context_.changes, HKEY_CLASSES_ROOT, protocol);
    if (key.Open()) {
        SetKeepingForeign(key, HVString(), u"URL: " + protocol + u" Protocol");
        // Its data is no ProgID, yet another program's text there is kept like any other value.
        KeepIfForeign(key, u"URL Protocol", HVString());
        HVString present;
        if (!key.Key().QueryString(u"URL Protocol", present) || !present.IsEmpty())
            key.SetString(u"URL Protocol", HVString());
    }
    CRegistryWriter command(context_.changes, HKEY_CLASSES_ROOT, protocol + u"\\shell\\open\\command");
    if (command.Open())
        SetKeepingForeign(command, HVString(), u"\"" + record_.launcherPath + u"\" /Protocol \"%L\"");
}

bool CFileAssociations::IsDiscTypeAssociated(const HVString& discType) const
{
    const char16_t* key = nullptr;
    const char16_t* option = nullptr;
    if (discType.EqualsNoCase(u"cdaudiodisc"))
        key = u"AudioCD", option = u"/AudioCD";
    else if (discType.EqualsNoCase(u"dvdvideodisc"))
        key = u"DVD", option = u"/DVDVideo";
    else if (discType.EqualsNoCase(u"bluraydisc"))
        key = u"Bluray", option = u"/Bluray";
    else
        return false;
    HVRegKey command;
    HVString value;
    if (record_.launcherPath.IsEmpty() ||
        !command.Open(HKEY_CLASSES_ROOT, HVString(key) + u"\\shell\\play\\command") || !command.QueryString(HVString(), value))
        return false;
    return value.FindNoCase(record_.launcherPath) != HVString::npos && value.FindNoCase(option) != HVString::npos;
}

HVString CFileAssociations::PerceivedType(const HVString& extension) const
{
    HVString type = context_.fileTypes.MediaType(extension);
    if (type != u"Audio" && type != u"Image" && type != u"Video")
        return HVString();
    return type.MakeLower();
}

HVString CFileAssociations::ContentType(const HVString& extension) const
{
    for (const FileTypeModel::MimeAssociation& mime : context_.fileTypes.MimeAssociations())
        if (mime.extension.EqualsNoCase(extension))
            return mime.type;
    return HVString();
}
