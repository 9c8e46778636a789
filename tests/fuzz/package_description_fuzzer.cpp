// The package description reader on arbitrary text, and the macro expansion on what it read,
// under the sanitizers: no crash, no read out of bounds, no undefined behaviour.
#include "foundation/HVTextDecoder.h"
#include "integration/CPackageDescription.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const HVString text = HVTextDecoder::Decode(std::string_view(reinterpret_cast<const char*>(data), size));
    CPackageDescription description;
    if (!description.Parse(text))
        return 0;
    for (const CPackageDescription::FileEntry& entry : description.files) {
        for (const CPackageDescription::Command& command : entry.commands)
            CPackageDescription::ExpandMacros(command.param, u"Sonora32", u"C:\\P\\");
    }
    description.HasActions();
    return 0;
}
