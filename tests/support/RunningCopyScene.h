#pragma once

// A running copy of the product as the running-copy check meets it, and the user who answers
// its boxes, from plain fields: the product stops after a number of "is it running" questions
// (or never), when its close operation is called, or when the user closes it by hand at the
// manual box. It keeps the questions asked, the close calls made and the boxes' titles.
// Header-only; for the Windows test programs.
//
//   RunningCopyScene scene;
//   scene.closeStopsIt = true;
//   CRunningCopyCheck check(scene.Product(u"Sonora"), false, scene.ShowBox());
//   EXPECT_TRUE(check.Run());

#include "install/win/CRunningCopyCheck.h"

#include <string>
#include <vector>

struct RunningCopyScene
{
    bool running = true;
    int stopsAfterQuestions = -1;  // -1: never stops by itself
    bool closeStopsIt = false;
    bool userClosesItAtManualBox = false;
    int answer = IDYES;            // to a yes-or-no box; any other box is answered OK

    int questions = 0;
    int closeCalls = 0;
    std::vector<std::string> titles = {};   // of the boxes shown, in order

    // `window`: the main window a server edition is asked to close through.
    CRunningCopyCheck::Product Product(const char16_t* name, HWND window = nullptr)
    {
        CRunningCopyCheck::Product product;
        product.displayName = name;
        product.isRunning = [this] {
            ++questions;
            if (stopsAfterQuestions >= 0 && questions > stopsAfterQuestions)
                running = false;
            return running;
        };
        product.mainWindow = [window] { return window; };
        product.closeRunningCopy = [this] {
            ++closeCalls;
            if (closeStopsIt)
                running = false;
        };
        return product;
    }
    CRunningCopyCheck::ShowBox ShowBox()
    {
        return [this](const HVString&, const HVString& title, UINT type) {
            titles.push_back(title.ToUtf8());
            if (title.StartsWith(u"Please Close") && userClosesItAtManualBox)
                running = false;
            return (type & MB_YESNO) ? answer : IDOK;
        };
    }
};
