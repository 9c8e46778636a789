// A Winamp input plug-in as far as the installer looks at it: the module record with its
// version, description and file types. SAMPLE_INPUT_VERSION picks the version it reports.
#include "integration/win/PluginEntryPoints.h"

namespace
{
char g_description[] = "Sample Tracker Input";
char g_extensions[] = "trk;trx\0Tracker Modules (*.trk;*.trx)\0smp\0Sample Files (*.smp)\0";
PluginEntryPoints::InModule g_module = {SAMPLE_INPUT_VERSION, g_description, nullptr, nullptr, g_extensions};
}

extern "C" __declspec(dllexport) PluginEntryPoints::InModule* __cdecl winampGetInModule2()
{
    return &g_module;
}
