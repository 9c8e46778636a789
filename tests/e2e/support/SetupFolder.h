#pragma once

#include <cstdint>
#include <string>

namespace e2e
{
// A setup folder of a test's own: a copy of the sample setup folder (InstallWizard.exe
// included) in ScratchFolder(name), which the test may change freely. Empty on failure.
std::wstring CopySampleSetup(const std::wstring& name);

// CopySampleSetup(name) that installs into `installFolder` (its InstallToPath) with the promo
// slideshow's floor at `promoMs`, for tests and benchmarks that install a generated tree of
// their own. Empty on failure.
std::wstring CopySampleSetupInstallingInto(const std::wstring& name, const std::wstring& installFolder, int promoMs = 1000);

// Sets the text of an element of the setup folder's Install.xml, named by its path from the
// root ("Product/InstallToPath"). The element must already be there: a test that sets an
// element the sample doesn't have would silently test nothing. `value` is written as given
// (escape "&" and "<" yourself).
bool SetDescriptionText(const std::wstring& setupFolder, const std::string& elementPath, const std::string& value);

// The product's version as the sample setup folder ships it (its main program's version
// resource, "32.0.0.0" without one): what an install records.
std::wstring SampleProductVersion();
// The bytes of every file in the folder and below it.
uint64_t TreeBytes(const std::wstring& folder);
}
