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
    // Every level that is missing is noted before it is made: an uninstall removes each one that
    // it finds empty, so a parent that others use by then stays.
    std::vector<HVString> missing;
    for (int32_t end = 0; end != HVString::npos;) {
        end = path_.Find(u'\\', end + 1);
        const HVString level = end == HVString::npos ? path_ : path_.Left(end);
        if (!missing.empty() || !HVRegKey::KeyExists(root_, level, view_))
            missing.push_back(level);
    }
    for (const HVString& level : missing)
        changes_.Note(InstallChange::Kind::KeyCreated, HVString(RootName(root_)) + u"\\" + level);
    if (!key_.Create(root_, path_, KEY_READ | KEY_WRITE, view_)) {
        HVLog::Write(HVLog::kError, "CRegistryWriter::Open", u"Cannot open or create %s (error %d)", notedPath_,
                     static_cast<int32_t>(key_.LastError()));
        return false;
    }
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
    InstallChange change{.kind = InstallChange::Kind::ValueWritten, .path = notedPath_, .name = name};
    DWORD oldType = 0;
    std::vector<uint8_t> old;
    if (key_.QueryValue(name, oldType, old)) {
        change.existedBefore = true;
        change.before = CProductRecordRules::DescribeData(oldType, old);
    }
    const auto* bytes = static_cast<const uint8_t*>(data);
    change.after = CProductRecordRules::DescribeData(type, std::vector<uint8_t>(bytes, bytes + size));
    changes_.Note(change);
    return key_.SetValue(name, type, data, size);
}

bool CRegistryWriter::DeleteValue(const HVString& name)
{
    DWORD oldType = 0;
    std::vector<uint8_t> old;
    if (!key_.QueryValue(name, oldType, old))
        return true;
    changes_.Note({.kind = InstallChange::Kind::ValueDeleted, .path = notedPath_, .name = name, .existedBefore = true,
                   .before = CProductRecordRules::DescribeData(oldType, old)});
    return key_.DeleteValue(name);
}

bool CRegistryWriter::DeleteSubKeyTree(const HVString& name)
{
    if (!key_.IsOpen() || !HVRegKey::KeyExists(key_.Get(), name))
        return true;
    // Every value that goes is noted with its data, so that a rollback can give it back.
    NoteValuesOf(key_.Get(), name, notedPath_ + u"\\" + name);
    changes_.Note(InstallChange::Kind::KeyDeleted, notedPath_ + u"\\" + name);
    return key_.DeleteSubKeyTree(name);
}

void CRegistryWriter::NoteValuesOf(HKEY parent, const HVString& subKey, const HVString& notedPath)
{
    HVRegKey key;
    if (!key.Open(parent, subKey, KEY_READ))
        return;
    for (const HVString& child : key.EnumSubKeys())
        NoteValuesOf(key.Get(), child, notedPath + u"\\" + child);
    for (const HVString& name : key.EnumValueNames()) {
        DWORD type = 0;
        std::vector<uint8_t> data;
        if (key.QueryValue(name, type, data))
            changes_.Note({.kind = InstallChange::Kind::ValueDeleted, .path = notedPath, .name = name, .existedBefore = true,
                           .before = CProductRecordRules::DescribeData(type, data)});
    }
}
