// A VST 2 effect: the entry gives an effect whose dispatcher answers the name request.
#include "integration/win/PluginEntryPoints.h"

#include <cstring>

namespace PE = PluginEntryPoints;

namespace
{
intptr_t __cdecl Dispatch(PE::VstEffect*, int32_t opcode, int32_t, intptr_t, void* pointer, float)
{
    if (opcode == PE::kVstGetEffectName && pointer) {
        std::strcpy(static_cast<char*>(pointer), "Sample Reverb");
        return 1;
    }
    return 0;
}

PE::VstEffect g_effect = {PE::kVstMagic, &Dispatch};
}

extern "C" __declspec(dllexport) PE::VstEffect* __cdecl VSTPluginMain(PE::VstHostCallback host)
{
    // A host that doesn't answer the version request is no host.
    return host && host(nullptr, 1, 0, 0, nullptr, 0.0f) > 0 ? &g_effect : nullptr;
}
