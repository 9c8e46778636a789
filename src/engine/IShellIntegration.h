#pragma once

// The product's place in the Windows shell: the registry action table of file types, AutoPlay
// handlers, MIME types, URL protocols and Default Programs.
class IShellIntegration
{
public:
    virtual ~IShellIntegration() = default;
    // False when the install can't go on (the user has been told why).
    virtual bool ApplyRegistryActions() = 0;
};
