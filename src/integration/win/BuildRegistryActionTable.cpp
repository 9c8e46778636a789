#include "integration/win/BuildRegistryActionTable.h"

#include "foundation/HVLogTimer.h"
#include "integration/CRegistryActionTable.h"
#include "integration/win/ApplyRegistryLines.h"
#include "integration/win/CFileAssociations.h"
#include "integration/win/RegisterDefaultPrograms.h"

void BuildRegistryActionTable(const ShellRegistration& record, const CShellContext& context)
{
    HVLogTimer timer("BuildRegistryActionTable");
    ApplyRegistryLines(record, CRegistryActionTable::Lines(!record.launcherPath.IsEmpty()), context);
    if (!record.associate)
        return;
    CFileAssociations(context, record).RegisterChosen();
    RegisterDefaultPrograms(record, context);
}
