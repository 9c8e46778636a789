// The filename-with-properties reader on arbitrary text, and the writer on arbitrary names and
// values: whatever is written must read back the same, and whatever is read must write and
// read back the same.
#include "foundation/HVFilenameWithProperties.h"
#include "foundation/HVTextDecoder.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>
#include <vector>

namespace
{
void Check(bool condition)
{
    if (!condition)
        std::abort();
}

bool Same(const HVFilenameWithProperties& a, const HVFilenameWithProperties& b)
{
    return a.GetPath() == b.GetPath() && a.GetProperties() == b.GetProperties();
}

void RoundTrip(const HVFilenameWithProperties& name)
{
    const HVString text = name.ToString();
    // A bare path that itself looks like XMLFN can't be told from one (no real path holds "<").
    if (name.GetProperties().IsEmpty() && HVFilenameWithProperties::IsXMLFN(name.GetPath().view()))
        return;
    Check(Same(HVFilenameWithProperties::Read(text), name));
}
}   // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const std::string_view bytes(reinterpret_cast<const char*>(data), size);

    // Reading any text, then writing what was read.
    const HVString text = HVTextDecoder::Decode(bytes);
    const HVFilenameWithProperties read = HVFilenameWithProperties::Read(text);
    if (!HVFilenameWithProperties::IsXMLFN(text.view()))
        Check(read.GetPath() == text && read.GetProperties().IsEmpty());
    RoundTrip(read);

    // Writing any path and properties: the input split at zero bytes into path, name, value,
    // name, value, ...
    std::vector<HVString> parts;
    size_t start = 0;
    for (size_t i = 0; i <= size; ++i) {
        if (i == size || data[i] == 0) {
            parts.push_back(HVTextDecoder::Decode(bytes.substr(start, i - start)));
            start = i + 1;
        }
    }
    HVFilenameWithProperties written(parts[0]);
    for (size_t i = 1; i + 1 < parts.size(); i += 2)
        written.GetProperties().Set(parts[i], parts[i + 1]);
    RoundTrip(written);
    return 0;
}
