#include "product/CCommandLineParser.h"

namespace
{
enum OptionIndex
{
    kDistributorId,
    kDir,
    kSilent,
    kSuppressMessages,
    kUpgrade,
    kNoAssociations,
    kNoDependencies,
    kNoUpgrade,
    kNoDriver,
    kNoRun,
    kRegFileAssociations,
    kLog,
    kLoadInf,
    kSaveInf,
    kRollback,
    kQuestion,
    kHelp,
};

// "/Log=C:\x.log", "/Log C:\x.log", "/Log "C:\My Logs\x.log"" all name the same file; the
// same for "/Dir".
HVString PathFrom(HVString rest)
{
    rest.Trim();
    if (!rest.IsEmpty() && rest[0] == u'=')
        rest = rest.Mid(1).Trim();
    rest.Trim(u"\"");
    return rest.Trim();
}
}

const std::vector<CCommandLineParser::Option>& CCommandLineParser::Options()
{
    static const std::vector<Option> options = {
        {u"DistributorID", u"/DistributorID <id>\tRecord the distributor's identifier with the installation."},
        {u"Dir", u"/Dir=<folder>\tInstall to <folder> (the destination page's checks still apply)."},
        {u"Silent", u"/Silent\tInstall without asking anything; every question is answered Yes."},
        {u"SuppressMessages", u"/SuppressMessages\tShow no message box: each takes its default answer and goes to the log. "
                              u"For deployment tools: /Silent /SuppressMessages /Log=<file>."},
        {u"Upgrade", u"/Upgrade\tUpgrade the existing installation with its settings."},
        {u"NoAssociations", u"/NoAssociations\tLeave the file associations as they are."},
        {u"NoDependencies", u"/NoDependencies\tDo not install the components the program depends on."},
        {u"NoUpgrade", u"/NoUpgrade\tDo not carry over the settings of an earlier version."},
        {u"NoDriver", u"/NoDriver\tDo not install the audio driver."},
        {u"NoRun", u"/NoRun\tDo not start the program when setup has finished."},
        {u"RegFileAssociations", u"/RegFileAssociations\tAssociate the file types chosen last time (or the default ones) without asking."},
        {u"Log", u"/Log[=<file>]\tWrite a log of this run to <file>, or to a dated file in %TEMP%."},
        {u"LoadInf", u"/LoadInf=<file>\tStart from the choices saved in an answer file; switches given here win."},
        {u"SaveInf", u"/SaveInf=<file>\tWrite the choices of this run to an answer file."},
        {u"Rollback", u"/Rollback\tUndo an install that was stopped before its end (with /Dir=<folder> for another folder)."},
        {u"?", u"/?\tShow this list and end."},
        {u"Help", u"/Help\tShow this list and end."},
    };
    return options;
}

std::vector<HVString> CCommandLineParser::Parse(const HVString& commandLine, InstallOptions& options)
{
    std::vector<HVString> ignored;
    const auto& table = Options();
    int32_t pos = commandLine.Find(u'/');
    while (pos != HVString::npos)
    {
        const int32_t next = commandLine.Find(u'/', pos + 1);
        const HVString piece = commandLine.Mid(pos + 1, next == HVString::npos ? HVString::npos : next - pos - 1);
        pos = next;

        size_t index = 0;
        while (index < table.size() && !piece.StartsWithNoCase(table[index].name))
            ++index;
        if (index == table.size())
        {
            ignored.push_back(piece);
            continue;
        }
        const HVString rest = piece.Mid(static_cast<int32_t>(std::u16string_view(table[index].name).size()));
        switch (index)
        {
        case kDistributorId:
            options.distributorId = rest;
            options.distributorId.Trim();
            break;
        case kDir: options.destinationFolder = PathFrom(rest); break;
        case kSilent: options.silent = true; break;
        case kSuppressMessages: options.suppressMessages = true; break;
        case kUpgrade: options.upgrade = true; break;
        case kNoAssociations: options.noAssociations = true; break;
        case kNoDependencies: options.noDependencies = true; break;
        case kNoUpgrade: options.noUpgrade = true; break;
        case kNoDriver: options.noDriver = true; break;
        case kNoRun: options.noRun = true; break;
        case kRollback: options.rollback = true; break;
        case kRegFileAssociations: options.regFileAssociations = true; break;
        case kLog:
            options.log = true;
            options.logPath = PathFrom(rest);
            break;
        case kLoadInf: options.loadInfPath = PathFrom(rest); break;
        case kSaveInf: options.saveInfPath = PathFrom(rest); break;
        case kQuestion:
        case kHelp: options.help = true; break;
        default: break;
        }
    }
    return ignored;
}

HVString CCommandLineParser::HelpText()
{
    HVString text = u"Install Wizard accepts these switches:\r\n\r\n";
    for (const Option& option : Options())
    {
        text += option.help;
        text += u"\r\n";
    }
    return text;
}
