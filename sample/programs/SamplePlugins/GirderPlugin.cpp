// A Girder remote-control plug-in: every export the installer requires; the text ones fill
// their buffers.
#include <windows.h>

#include <cstring>

namespace
{
void Fill(char* buffer, int size, const char* text)
{
    if (buffer && size > 0) {
        std::strncpy(buffer, text, static_cast<size_t>(size) - 1);
        buffer[size - 1] = 0;
    }
}
}

#define GIRDER_EXPORT extern "C" __declspec(dllexport)
GIRDER_EXPORT int __stdcall gir_open(int, HWND, void*) { return 1; }
GIRDER_EXPORT int __stdcall gir_close() { return 1; }
GIRDER_EXPORT int __stdcall gir_start() { return 1; }
GIRDER_EXPORT int __stdcall gir_stop() { return 1; }
GIRDER_EXPORT void __stdcall gir_config() {}
GIRDER_EXPORT int __stdcall gir_info(int, WPARAM, LPARAM) { return 0; }
GIRDER_EXPORT void __stdcall gir_name(char* buffer, int size) { Fill(buffer, size, "Sample Remote"); }
GIRDER_EXPORT void __stdcall gir_description(char* buffer, int size) { Fill(buffer, size, "Sample infrared receiver"); }
GIRDER_EXPORT void __stdcall gir_version(char* buffer, int size) { Fill(buffer, size, "1.2"); }
GIRDER_EXPORT int __stdcall gir_compare(const char*, const char*) { return 0; }
GIRDER_EXPORT int __stdcall gir_devicenum() { return 217; }
GIRDER_EXPORT int __stdcall gir_requested_api(int) { return 1; }
