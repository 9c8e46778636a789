#include "ScopedRegString.h"

#include "TestRegistry.h"

namespace e2e
{
ScopedRegString::ScopedRegString(HKEY root, std::wstring path, std::wstring name, const std::wstring& value)
    : root_(root), path_(std::move(path)), name_(std::move(name)), old_(RegString(root_, path_, name_))
{
    RegSetString(root_, path_, name_, value);
}

ScopedRegString::~ScopedRegString()
{
    if (old_)
        RegSetString(root_, path_, name_, *old_);
    else
        RegDeleteValueIfPresent(root_, path_, name_);
}
}
