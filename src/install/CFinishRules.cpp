#include "install/CFinishRules.h"

bool CFinishRules::RestartNeeded(bool restartFlag, const std::vector<HVString>& pendingFiles,
                                 const std::vector<HVString>& pendingRegistrations)
{
    if (restartFlag)
        return true;
    for (const std::vector<HVString>* list : {&pendingFiles, &pendingRegistrations})
        for (const HVString& entry : *list)
            if (entry.FindNoCase(u"shellext.dll") >= 0)
                return true;
    return false;
}

int CFinishRules::PrepareChoice(bool restartNeeded, bool noRun, bool runWanted)
{
    if (restartNeeded)
        return kRestart;
    return noRun || !runWanted ? kNothing : kRun;
}

CFinishRules::Box CFinishRules::BoxShown(bool restartNeeded, bool noRun)
{
    if (restartNeeded)
        return Box::Restart;
    return noRun ? Box::None : Box::Run;
}

int CFinishRules::ChoiceOnFinish(Box box, bool checked)
{
    if (!checked || box == Box::None)
        return kNothing;
    return box == Box::Restart ? kRestart : kRun;
}

CFinishRules::Leave CFinishRules::LeaveAction(bool silent, int choice)
{
    if (silent)
        return Leave::Now;
    if (choice == kRun)
        return Leave::HandOver;
    return choice == kRestart ? Leave::ConfirmRestart : Leave::Now;
}
