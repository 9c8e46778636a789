#pragma once

#include "integration/ShellRegistration.h"

struct CShellContext;

// The end of a registration: the table and the association steps when the record asks for
// them, then the shell's notice that associations changed, so Explorer shows the new icons.
void CompleteShellRegistration(const ShellRegistration& record, const CShellContext& context);
