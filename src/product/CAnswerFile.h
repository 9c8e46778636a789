#pragma once

#include "foundation/HVString.h"
#include "product/InstallOptions.h"

// An answer file: the choices of one run of the setup as an INI file a person can read and
// edit, written by "/SaveInf=<file>" and replayed by "/LoadInf=<file>". All keys are in the
// section [Setup]; ";" or "#" starts a comment line; keys and words are read without regard
// to case. A key that is absent leaves the setup's own default.
//
//   Language=de                  a language code of the setup folder's "Languages\" ("en")
//   SetupType=Custom             Express or Custom
//   Portable=no                  yes or no (a portable install is a Custom one)
//   Dir=C:\Apps\Sonora\          the destination folder
//   Shortcuts=StartMenu          StartMenu, Desktop, QuickLaunch, separated by ","; or none
//   FileTypes=.mp3, .flac        extensions separated by "," or ";"; or none
//   RunAtEnd=no                  the finish page's "Run installed program now"
//   NoAssociations=no            and NoDependencies, NoUpgrade, NoDriver: the switches
//   DistributorID=ACME-42        recorded with the installation
//
// yes and no may also be written 1 and 0, true and false, on and off.
class CAnswerFile
{
public:
    static constexpr const char16_t* kSection = u"Setup";

    // Puts the file's choices into `options` (its answers and the fields they stand for). An
    // unknown key, a line that is no key, or a value the key can't take is logged, and that
    // key keeps its default. Returns how many such problems there were.
    static int Apply(const HVString& text, InstallOptions& options);

    // The run's choices as the text of an answer file: the choices made (or given), and each
    // choice that wasn't as a commented-out key, so that a person sees what can be set.
    static HVString Write(const InstallOptions& options);
};
