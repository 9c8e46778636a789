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

// VST 3: GetPluginFactory returns the factory (a COM-style object); its classes name the
// effects. Only the leading methods of the published interfaces, in their order.
struct Vst3ClassInfo
{
    char cid[16];
    int32_t cardinality;
    char category[32];  // "Audio Module Class" for an effect
    char name[64];
};
struct Vst3Factory;
struct Vst3FactoryMethods
{
    int32_t(__stdcall* queryInterface)(Vst3Factory*, const char* iid, void** object);
    uint32_t(__stdcall* addRef)(Vst3Factory*);
    uint32_t(__stdcall* release)(Vst3Factory*);
    int32_t(__stdcall* getFactoryInfo)(Vst3Factory*, void* info);
    int32_t(__stdcall* countClasses)(Vst3Factory*);
    int32_t(__stdcall* getClassInfo)(Vst3Factory*, int32_t index, Vst3ClassInfo* info);
};
struct Vst3Factory
{
    const Vst3FactoryMethods* methods;
};
using GetPluginFactory = Vst3Factory*(__stdcall*)();
constexpr const char* kVst3EffectCategory = "Audio Module Class";

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
