#pragma once

class HVString;

// The process-wide log sink. The application supplies it; the library only writes through it.
class IHVLogger
{
public:
    // level: 1 library errors, 2 warnings, 3 information, 4 detail.
    // source: "Class::Method" of the writer.
    virtual void Write(int level, const char* source, const HVString& message) = 0;

protected:
    ~IHVLogger() = default;
};
