#include "integration/win/CompleteShellRegistration.h"

#include "integration/win/BuildRegistryActionTable.h"

#include <windows.h>
#include <shlobj.h>

void CompleteShellRegistration(const ShellRegistration& record, const CShellContext& context)
{
    if (record.applyTable)
        BuildRegistryActionTable(record, context);
    if (record.notifyShell)
        ::SHChangeNotify(SHCNE_ASSOCCHANGED, SHCNF_IDLIST, nullptr, nullptr);
}
