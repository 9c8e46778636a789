#pragma once

#include "engine/IInstallDependency.h"

class CDependencyRunner;

// The sample media of the setup folder (the "BundledMedia" folder of the install settings):
// copied into the program folder's "Media\" by the version-check rule, and its "Playlist.mpl",
// when there is one, set as the playlist the product plays on its first start.
class CInstallBundledMedia : public IInstallDependency
{
public:
    explicit CInstallBundledMedia(CDependencyRunner& runner) : runner_(runner) {}
    bool Install() override;
    bool ContinueOnFailure() const override { return true; }

    static constexpr const char16_t* kStartupMediaSetting = u"Install - Startup Media";

private:
    CDependencyRunner& runner_;
};
