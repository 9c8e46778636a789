// A VST 3 module: its factory names one effect class, under a name other than the file's
// version resource gives, so that a test can tell which of the two the installer read.
#include "integration/win/PluginEntryPoints.h"

#include <cstring>

namespace PE = PluginEntryPoints;

namespace
{
int32_t __stdcall QueryInterface(PE::Vst3Factory*, const char*, void** object)
{
    if (object)
        *object = nullptr;
    return -1;
}
uint32_t __stdcall AddRef(PE::Vst3Factory*) { return 1; }
uint32_t __stdcall Release(PE::Vst3Factory*) { return 1; }
int32_t __stdcall GetFactoryInfo(PE::Vst3Factory*, void*) { return 0; }
int32_t __stdcall CountClasses(PE::Vst3Factory*) { return 2; }

int32_t __stdcall GetClassInfo(PE::Vst3Factory*, int32_t index, PE::Vst3ClassInfo* info)
{
    if (!info || index < 0 || index > 1)
        return -1;
    std::memset(info, 0, sizeof(*info));
    // An editor class first: only the audio class names the effect.
    std::strcpy(info->category, index == 0 ? "Component Controller Class" : PE::kVst3EffectCategory);
    std::strcpy(info->name, index == 0 ? "Sample Chorus Editor" : "Sample Chorus");
    return 0;
}

const PE::Vst3FactoryMethods g_methods = {&QueryInterface, &AddRef, &Release, &GetFactoryInfo, &CountClasses, &GetClassInfo};
PE::Vst3Factory g_factory = {&g_methods};
}

extern "C" __declspec(dllexport) PE::Vst3Factory* __stdcall GetPluginFactory()
{
    return &g_factory;
}
