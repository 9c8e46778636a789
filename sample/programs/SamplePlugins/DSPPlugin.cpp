// A Winamp DSP plug-in: the header with its description.
#include "integration/win/PluginEntryPoints.h"

namespace
{
char g_description[] = "Sample Echo DSP";
PluginEntryPoints::DSPHeader g_header = {0x20, g_description};
}

extern "C" __declspec(dllexport) PluginEntryPoints::DSPHeader* __cdecl winampDSPGetHeader2()
{
    return &g_header;
}
