#pragma once

// A wizard page with every kind of control the install pages use, long texts included, and
// switches for its enter test and Next: what the toolkit's wizard tests put in their wizard.
// Header-only; for the Windows test programs.

#include "toolkit/win/HVCheckBox.h"
#include "toolkit/win/HVEditCtrl.h"
#include "toolkit/win/HVRadioButton.h"
#include "toolkit/win/HVStaticText.h"
#include "toolkit/win/HVTextBox.h"
#include "toolkit/win/HVWizardPopupWnd.h"

#include <string>

class WizardTestPage : public HVWizardPageWnd
{
public:
    explicit WizardTestPage(std::wstring name) : name_(std::move(name)) {}

    bool enter = true;
    int refuseNext = 0;  // Next presses to refuse before accepting

    bool CreateControls() override
    {
        HVPlacement prompt;
        HVPlacement choice{.x = 7, .gap = 8};
        HVPlacement text{.x = 19, .gap = 1};
        HVPlacement edit{.gap = 6};
        HVPlacement box{.gap = 4, .cy = HVPlacement::kFillHeight};
        return prompt_.Create(*this, u"Please select a setup type.", prompt) &&
               first_.Create(*this, u"Express", choice, true) &&
               firstText_.Create(*this,
                                 u"This lets you put a complete copy of the program on a removable drive, so you can "
                                 u"take it to another compatible computer and run it.  This will also ask for a drive "
                                 u"and path.",
                                 text) &&
               second_.Create(*this, u"Custom", choice, false) && edit_.Create(*this, u"C:\\Program Files\\", edit) &&
               check_.Create(*this, u"Next time use Auto Install after 30 second timeout.", edit) &&
               box_.Create(*this, u"Line one\r\nLine two", box);
    }
    bool EnterTest() override { return enter; }
    bool NextPressed() override { return refuseNext-- <= 0; }
    HVString Title() const override { return HVString(name_.c_str()); }
    HVString Subtitle() const override { return u"Choose the setup type that best suits your needs."; }

    std::wstring name_;
    HVStaticText prompt_;
    HVRadioButton first_;
    HVStaticText firstText_;
    HVRadioButton second_;
    HVEditCtrl edit_;
    HVCheckBox check_;
    HVTextBox box_;
};
