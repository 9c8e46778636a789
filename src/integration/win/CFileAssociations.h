#pragma once

#include "foundation/HVString.h"
#include "integration/ShellRegistration.h"

class CRegistryWriter;
struct CShellContext;

// Makes the product the opener of file types and URL protocols, keeping what another program
// had there beside it (a ".BAK" value), so that it can be given back. A value of another
// program is backed up once: a later install never overwrites the first backup.
class CFileAssociations
{
public:
    CFileAssociations(const CShellContext& context, const ShellRegistration& record)
        : context_(context), record_(record) {}

    // The protocol-and-extension step: every chosen extension and the MIME extension, then
    // every chosen protocol.
    void RegisterChosen();
    // progId empty: the product's ProgID for the extension.
    void AssociateExtension(const HVString& extension, const HVString& progId);
    void RegisterProtocol(const HVString& protocol);
    // "cdaudiodisc", "dvdvideodisc" or "bluraydisc" plays in the product now.
    bool IsDiscTypeAssociated(const HVString& discType) const;

    // The perceived type of an extension ("audio", "image", "video"; "" for others).
    HVString PerceivedType(const HVString& extension) const;
    // The first MIME type that maps to the extension, or "".
    HVString ContentType(const HVString& extension) const;

private:
    // Sets a string value (deletes it when value is empty), first keeping another program's
    // string beside it.
    void SetKeepingForeign(CRegistryWriter& key, const HVString& name, const HVString& value) const;
    void KeepForeign(CRegistryWriter& key, const HVString& name, const HVString& value) const;
    // Keeps the present string beside the value when it is another program's and `value` differs.
    void KeepIfForeign(CRegistryWriter& key, const HVString& name, const HVString& value) const;
    void RegisterMimeTypes(const HVString& extension);
    void OverridePerUserChoice(const HVString& extension, const HVString& progId);

    const CShellContext& context_;
    const ShellRegistration& record_;
};
