#pragma once

#include "foundation/win/HVRegKey.h"

#include <windows.h>

#include <optional>
#include <string>
#include <vector>

namespace e2e
{
// Registry reads for assertions: nullopt means "not there" (key or value missing, or of
// another type). `view` selects the 64-bit or the 32-bit ("WOW6432Node") registry.
std::optional<std::wstring> RegString(HKEY root, const std::wstring& path, const std::wstring& name,
                                      HVRegView view = HVRegView::Native);
std::optional<DWORD> RegDword(HKEY root, const std::wstring& path, const std::wstring& name,
                              HVRegView view = HVRegView::Native);
std::optional<std::vector<std::wstring>> RegMultiString(HKEY root, const std::wstring& path,
                                                        const std::wstring& name,
                                                        HVRegView view = HVRegView::Native);
bool RegKeyExists(HKEY root, const std::wstring& path, HVRegView view = HVRegView::Native);
bool RegValueExists(HKEY root, const std::wstring& path, const std::wstring& name,
                    HVRegView view = HVRegView::Native);
std::vector<std::wstring> RegValueNames(HKEY root, const std::wstring& path, HVRegView view = HVRegView::Native);
std::vector<std::wstring> RegSubKeys(HKEY root, const std::wstring& path, HVRegView view = HVRegView::Native);

// Arranging a machine for a test. True when the key or value is gone afterwards (also when it
// never existed).
bool RegSetString(HKEY root, const std::wstring& path, const std::wstring& name, const std::wstring& value,
                  HVRegView view = HVRegView::Native);
bool RegSetDword(HKEY root, const std::wstring& path, const std::wstring& name, DWORD value,
                 HVRegView view = HVRegView::Native);
bool RegDeleteKeyTree(HKEY root, const std::wstring& path, HVRegView view = HVRegView::Native);
// Deletes the key with everything below it, then each parent up to (not including) "Software"
// that is left with no subkeys and no values: a test that made "Software\Halvard\..." leaves
// the machine as a fresh one, where the product's keys don't exist at all.
bool RegDeleteKeyTreeAndEmptyParents(HKEY root, const std::wstring& path, HVRegView view = HVRegView::Native);
bool RegDeleteValueIfPresent(HKEY root, const std::wstring& path, const std::wstring& name,
                             HVRegView view = HVRegView::Native);
// A new key that lives in memory only: the system refuses lasting keys below it, as it would
// for a key without write rights. False when the key was there already (an empty one is
// removed first).
bool RegCreateVolatileKey(HKEY root, const std::wstring& path);
}
