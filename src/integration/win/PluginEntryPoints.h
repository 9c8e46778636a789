#pragma once

#include <windows.h>

#include <cstdint>

// Our own minimal declarations of the published plug-in entry points: only the leading fields
// that the installer reads to learn a plug-in's kind, name, version and file types. The sample
// plug-ins are built from these same declarations.
namespace PluginEntryPoints
{
// Winamp input plug-in: winampGetInModule2 returns the module record.
struct InModule
{
    int version;
    char* description;
    HWND mainWindow;
    HINSTANCE dllInstance;
    char* fileExtensions;  // pairs of zero-terminated strings: "mp3;mp2\0MPEG Audio\0...\0"
};
using GetInModule = InModule*(__cdecl*)();

// Winamp DSP plug-in: winampDSPGetHeader2 returns the header.
struct DSPHeader
{
    int version;
    char* description;
};
using GetDSPHeader = DSPHeader*(__cdecl*)();

// VST 2: the entry returns an effect whose dispatcher answers the name request.
struct VstEffect;
using VstHostCallback = intptr_t(__cdecl*)(VstEffect*, int32_t, int32_t, intptr_t, void*, float);
using VstDispatcher = intptr_t(__cdecl*)(VstEffect*, int32_t, int32_t, intptr_t, void*, float);
struct VstEffect
{
    int32_t magic;  // 'VstP'
    VstDispatcher dispatcher;
};
using VstMain = VstEffect*(__cdecl*)(VstHostCallback);
constexpr int32_t kVstMagic = ('V' << 24) | ('s' << 16) | ('t' << 8) | 'P';
constexpr int32_t kVstClose = 1;
constexpr int32_t kVstGetEffectName = 45;

// Girder: each text export fills a buffer of the given size.
using GirderText = void(__stdcall*)(char* buffer, int size);

constexpr const char* kInputExport = "winampGetInModule2";
constexpr const char* kDSPExport = "winampDSPGetHeader2";
constexpr const char* kVisExport = "winampVisGetHeader";
constexpr const char* kVstExports[] = {"VSTPluginMain", "main"};
constexpr const char* kVst3Export = "GetPluginFactory";
constexpr const char* kGirderExports[] = {"gir_open",    "gir_close",   "gir_start",       "gir_stop",
                                          "gir_config",  "gir_info",    "gir_name",        "gir_description",
                                          "gir_version", "gir_compare", "gir_devicenum",   "gir_requested_api"};
}   // namespace PluginEntryPoints
