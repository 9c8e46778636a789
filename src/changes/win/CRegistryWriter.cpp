#include "changes/win/CRegistryWriter.h"

#include "changes/CInstallChangeLog.h"
#include "foundation/HVLog.h"
#include "product/CProductRecordRules.h"

CRegistryWriter::CRegistryWriter(CInstallChangeLog& changes, HKEY root, const HVString& path, HVRegView view)
    : changes_(changes), root_(root), path_(path), notedPath_(HVString(RootName(root)) + u"\\" + path), view_(view)
{
}

const char16_t* CRegistryWriter::RootName(HKEY root)
{
    if (root == HKEY_LOCAL_MACHINE)
        return u"HKLM";
    if (root == HKEY_CURRENT_USER)
        return u"HKCU";
    if (root == HKEY_CLASSES_ROOT)
        return u"HKCR";
    if (root == HKEY_CURRENT_CONFIG)
        return u"HKCC";
    return u"HKU";
}

bool CRegistryWriter::Open()
{
    // The topmost missing level is what an uninstall removes; below it everything is ours.
    HVString missing;
    for (int32_t end = 0; end != HVString::npos && missing.IsEmpty(); ) {
        end = path_.Find(u'\\', end + 1);
        const HVString level = end == HVString::npos ? path_ : path_.Left(end);
        if (!HVRegKey::KeyExists(root_, level, view_))
            missing = level;
    }
    if (!key_.Create(root_, path_, KEY_READ | KEY_WRITE, view_)) {
        HVLog::Write(HVLog::kError, "CRegistryWriter::Open", u"Cannot open or create %s (error %d)", notedPath_,
                     static_cast<int32_t>(key_.LastError()));
        return false;
    }
    if (!missing.IsEmpty())
        changes_.Note(InstallChange::Kind::KeyCreated, HVString(RootName(root_)) + u"\\" + missing);
    return true;
}

bool CRegistryWriter::OpenExisting() { return key_.Open(root_, path_, KEY_READ | KEY_WRITE, view_); }

bool CRegistryWriter::SetString(const HVString& name, const HVString& value)
{
    return Write(name, REG_SZ, value.c_str(), (value.GetLength() + 1) * sizeof(char16_t));
}

bool CRegistryWriter::SetDWORD(const HVString& name, DWORD value) { return Write(name, REG_DWORD, &value, sizeof value); }

bool CRegistryWriter::SetValue(const HVString& name, DWORD type, const std::vector<uint8_t>& data)
{
    return Write(name, type, data.data(), data.size());
}

bool CRegistryWriter::Write(const HVString& name, DWORD type, const void* data, size_t size)
{
    InstallChange change;
    change.kind = InstallChange::Kind::ValueWritten;
    change.path = notedPath_;
    change.name = name;
    DWORD oldType = 0;
    std::vector<uint8_t> old;
    if (key_.QueryValue(name, oldType, old)) {
        change.existedBefore = true;
        change.before = CProductRecordRules::DescribeData(oldType, old);
    }
    if (!key_.SetValue(name, type, data, size))
        return false;
    changes_.Note(change);
    return true;
}

bool CRegistryWriter::DeleteValue(const HVString& name)
{
    DWORD oldType = 0;
    std::vector<uint8_t> old;
    if (!key_.QueryValue(name, oldType, old))
        return true;
    if (!key_.DeleteValue(name))
        return false;
    InstallChange change;
    change.kind = InstallChange::Kind::ValueDeleted;
    change.path = notedPath_;
    change.name = name;
    change.existedBefore = true;
    change.before = CProductRecordRules::DescribeData(oldType, old);
    changes_.Note(change);
    return true;
}

bool CRegistryWriter::DeleteSubKeyTree(const HVString& name)
{
    if (!key_.IsOpen() || !HVRegKey::KeyExists(key_.Get(), name))
        return true;
    if (!key_.DeleteSubKeyTree(name))
        return false;
    changes_.Note(InstallChange::Kind::KeyDeleted, notedPath_ + u"\\" + name);
    return true;
}
