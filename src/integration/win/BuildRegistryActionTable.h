#pragma once

#include "integration/ShellRegistration.h"

struct CShellContext;

// The action table (without the launcher lines when no launcher is known), then the chosen
// extensions and protocols, then Default Programs.
void BuildRegistryActionTable(const ShellRegistration& record, const CShellContext& context);
