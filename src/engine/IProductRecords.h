#pragma once

// The product's registry records that the copy step writes around the files: the records of
// retired plug-ins and settings it removes, the default library and settings, what an earlier
// major version leaves to carry over, the installation record and the uninstall entry.
class IProductRecords
{
public:
    virtual ~IProductRecords() = default;
    virtual void RemoveRetiredRecords() = 0;
    virtual void LoadDefaultSettings() = 0;
    virtual void UpgradeFromPreviousVersion() = 0;
    // The installations record and the "Installer" key; false stops the install.
    virtual bool RecordInstallation() = 0;
    virtual void WriteUninstallEntry() = 0;
};
