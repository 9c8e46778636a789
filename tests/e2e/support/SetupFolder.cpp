#include "SetupFolder.h"

#include "FolderTree.h"
#include "TestPaths.h"

#include "foundation/CVersionInfo.h"

#include <windows.h>

namespace e2e
{
std::wstring CopySampleSetup(const std::wstring& name)
{
    const std::wstring folder = ScratchFolder(name);
    if (folder.empty() || !CopyTree(MediaFolder(), folder))
        return {};
    return folder;
}

std::wstring CopySampleSetupInstallingInto(const std::wstring& name, const std::wstring& installFolder, int promoMs)
{
    const std::wstring folder = CopySampleSetup(name);
    if (folder.empty() || !SetDescriptionText(folder, "Product/InstallToPath", Utf8(installFolder)) ||
        !SetDescriptionText(folder, "Installer/PromoMinimumMilliseconds", std::to_string(promoMs)))
        return {};
    return folder;
}

bool SetDescriptionText(const std::wstring& setupFolder, const std::string& elementPath, const std::string& value)
{
    const std::wstring path = setupFolder + L"Install.xml";
    std::string xml;
    if (!ReadFileBytes(path, xml))
        return false;
    // Each step of the path is looked for after the previous one, so "Product/InstallToPath"
    // finds the element inside <Product> even when another element of that name comes earlier.
    size_t at = 0;
    std::string name;
    for (size_t start = 0; start <= elementPath.size();) {
        const size_t slash = std::min(elementPath.find('/', start), elementPath.size());
        name = elementPath.substr(start, slash - start);
        at = xml.find("<" + name + ">", at);
        if (at == std::string::npos)
            return false;
        at += name.size() + 2;
        start = slash + 1;
    }
    const size_t end = xml.find("</" + name + ">", at);
    if (end == std::string::npos)
        return false;
    xml.replace(at, end - at, value);
    return WriteFileBytes(path, xml);
}

std::wstring SampleProductVersion()
{
    CVersionInfo version;
    return version.Read((MediaFolder() + L"Listenwell\\Sonora 32.exe").c_str())
               ? std::wstring(reinterpret_cast<const wchar_t*>(version.GetText().c_str()))
               : L"32.0.0.0";
}

uint64_t TreeBytes(const std::wstring& folder)
{
    uint64_t total = 0;
    for (const std::wstring& file : ListTree(folder)) {
        WIN32_FILE_ATTRIBUTE_DATA data{};
        if (GetFileAttributesExW((folder + file).c_str(), GetFileExInfoStandard, &data))
            total += (uint64_t(data.nFileSizeHigh) << 32) | data.nFileSizeLow;
    }
    return total;
}
}
