#include "integration/win/ApplyRegistryLines.h"

#include "changes/win/CRegistryWriter.h"
#include "foundation/win/HVFileSystem.h"
#include "integration/CRegistryActionLine.h"
#include "integration/CRegistryMacros.h"
#include "integration/win/CShellContext.h"
#include "product/win/CProductIdentity.h"

#include <windows.h>

#include <atomic>

namespace
{
HKEY RootKey(CRegistryActionLine::Root root)
{
    switch (root) {
    case CRegistryActionLine::Root::CurrentUser: return HKEY_CURRENT_USER;
    case CRegistryActionLine::Root::LocalMachine: return HKEY_LOCAL_MACHINE;
    case CRegistryActionLine::Root::ClassesRoot: break;
    }
    return HKEY_CLASSES_ROOT;
}

HVString SystemDirectory()
{
    wchar_t buffer[MAX_PATH + 1] = {};
    const UINT length = ::GetSystemDirectoryW(buffer, MAX_PATH + 1);
    if (length == 0 || length > MAX_PATH)
        return HVString();
    return HVFileSystem::NormalizeFolderPath(HVString(buffer, static_cast<int32_t>(length)));
}

// CREATE leaves a value that already has content: a non-empty text (a DWORD counts as its
// decimal text, so even 0 is content) or, for DWORD lines, any DWORD.
bool HasContent(const HVRegKey& key, const CRegistryActionLine& line)
{
    DWORD type = 0;
    if (!key.QueryValueType(line.valueName, type))
        return false;
    if (!line.isString)
        return type == REG_DWORD;
    HVString text;
    DWORD number = 0;
    if (key.QueryString(line.valueName, text))
        return !text.IsEmpty();
    return key.QueryDWORD(line.valueName, number);
}

}   // namespace

void ApplyRegistryLine(const CRegistryActionLine& line, HKEY root, HVRegView view, CInstallChangeLog& changes)
{
    CRegistryWriter writer(changes, root, line.keyPath, view);
    if (!writer.Open())
        return;
    if (line.action == CRegistryActionLine::Action::Delete) {
        writer.DeleteValue(line.valueName);
        return;
    }
    if (line.action == CRegistryActionLine::Action::Create && HasContent(writer.Key(), line))
        return;
    if (line.isString)
        writer.SetString(line.valueName, line.data);
    else
        writer.SetDWORD(line.valueName, static_cast<DWORD>(CRegistryActionLine::Number(line.data)));
}

bool IsProcessUnderWow64()
{
    // -1: not asked yet. Written once; a second asker gets the same answer.
    static std::atomic<int> answer{-1};
    int known = answer.load();
    if (known < 0) {
        BOOL wow64 = FALSE;
        known = ::IsWow64Process(::GetCurrentProcess(), &wow64) && wow64 ? 1 : 0;
        answer.store(known);
    }
    return known == 1;
}

void ApplyRegistryLines(const ShellRegistration& record, const std::vector<HVString>& lines, const CShellContext& context,
                        bool underWow64)
{
    CRegistryMacros macros;
    macros.installDir = context.installFolder;
    macros.systemDir = SystemDirectory();
    macros.currentDir = context.setupFolder;
    macros.productName = context.product.GetDisplayName();
    macros.productWithVersion = record.productWithVersion;
    macros.exePath = context.installFolder + context.product.GetMainProgramName();
    macros.launcherPath = record.launcherPath;
    macros.launcherName = record.launcherName;
    macros.findArt = [&context](const HVString& name) { return context.product.FindArt(context.installFolder, name); };

    HKEY root = HKEY_CLASSES_ROOT;
    for (const HVString& text : lines) {
        if (text.IsEmpty())
            continue;
        if (const auto marker = CRegistryActionLine::RootMarker(text)) {
            root = RootKey(*marker);
            continue;
        }
        const bool bothViews = underWow64 && CRegistryMacros::NeedsBothViews(text);
        const auto line = CRegistryActionLine::Parse(macros.Expand(text));
        if (!line)
            continue;
        ApplyRegistryLine(*line, root, HVRegView::Native, context.changes);
        if (bothViews)
            ApplyRegistryLine(*line, root, HVRegView::Key64, context.changes);
    }
}
