#pragma once

// End-to-end test support: everything a Windows test needs to run the installer (or any other
// program) the way a user would and to look at what it left behind. Include this one header.
//
//   Paths          TestProgramFolder(), MediaFolder() (the sample setup folder, build/win/media),
//                  InstallWizardPath(), ToolPath(L"ShowBox.exe"), ScratchFolder(L"MyTest").
//   ProgramDriver  starts a program with a command line, watches the dialogs of its process,
//                  records the title and text of each, answers them by DialogRule (title and
//                  text -> button), fails on a dialog no rule answers, ends the program after a
//                  time limit, and returns a RunResult with the exit code and the record:
//
//                    e2e::RunOptions options;
//                    options.commandLine = L"/Silent";
//                    options.rules = {{.title = L"Install Error", .text = L"...", .button = IDOK}};
//                    e2e::RunResult run = e2e::ProgramDriver(options).Run();
//                    ASSERT_TRUE(run.ExitedWith(0)) << run.Describe();
//
//   Windows        ListTopLevelWindows(pid), InspectWindow(hwnd): class, title, static texts
//                  and buttons of any top-level window (used by the driver and ListWindows.exe).
//   Registry       RegString/RegDword/... in either registry view (HVRegView::Key32/Key64).
//   Folders        ListTree(folder) and CompareTree(folder, expected): relative paths, with a
//                  readable list of what is missing and what is extra; CopyTree, DeleteTree.
//   HeldFileLock   holds a file open without sharing from another process (HoldLock.exe) for
//                  as long as the object lives: CopyFileW/DeleteFileW on it fail as "in use".
//   UninstallRun   RunUninstaller(installFolder, L"/Silent"), MachineSnapshot() to compare.
//   SetupRun       MakeSetupFolder(name, xml), RunSetup(options) with its log read back,
//                  RunningProduct.
//   ScopedRegString  a registry string set for as long as the object lives, then put back.
//   FreshMachine   ResetToFreshMachine(): removes every registry key, value, file and folder the
//                  installer writes and ends the product's processes, so that each end-to-end
//                  test starts from a machine on which the product was never installed;
//                  FreshMachineTest, the fixture that does so before and after each test.
//   WizardDriver   WizardUser: steps through the wizard's pages by their titles as a user would.
//   SetupFolder    CopySampleSetup(L"MyTest"): a changeable copy of the sample setup folder;
//                  SetDescriptionText(folder, "Product/InstallToPath", "...") edits Install.xml.
//   LocalHttpServer  an HTTP server on 127.0.0.1 whose replies (and misbehaviour) the test picks;
//                  LocalHttpsServer one for https, trusted or not, serving a file or redirecting.
//   Shortcut       ReadShortcut(link): target, arguments and icon of a ".lnk" file; the Start
//                  Menu folder and desktop and Quick Launch links the installer makes.
//   GeneratedTree  PlanTree({.files = 300, .totalBytes = 30 << 20}) and WriteGeneratedTree(...):
//                  a made-up program tree, the same on every run, in numbered editions.
//   Scenario       RunScenario(row): a whole run written as data (setup folder, machine before,
//                  command line, a person's answers, what must be there after); Scenario.h.
//
// Strings are std::wstring (readable in test failure output); Describe() texts are UTF-8.

#include "FolderTree.h"
#include "FreshMachine.h"
#include "FreshMachineTest.h"
#include "GeneratedTree.h"
#include "HeldFileLock.h"
#include "LocalHttpServer.h"
#include "LocalHttpsServer.h"
#include "ProductKeys.h"
#include "ProgramDriver.h"
#include "ScopedRegString.h"
#include "SetupFolder.h"
#include "SetupRun.h"
#include "Shortcut.h"
#include "TestPaths.h"
#include "TestRegistry.h"
#include "UninstallRun.h"
#include "WindowInspector.h"
#include "WizardDriver.h"
