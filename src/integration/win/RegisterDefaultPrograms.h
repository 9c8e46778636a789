#pragma once

#include "integration/ShellRegistration.h"

struct CShellContext;

// Lists the product in Windows' Default Programs (Vista and later) with the chosen types,
// protocols and MIME types as its capabilities. Earlier Windows have no such list: nothing.
void RegisterDefaultPrograms(const ShellRegistration& record, const CShellContext& context);
