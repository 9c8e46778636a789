#pragma once

#include "foundation/HVString.h"
#include "foundation/win/HVHttpReader.h"

class CDependencyRunner;
class CTemporaryDownloadFile;
class HVInstallDescription;

// Fetches a dependency's setup program from the maker's download server and runs it: the
// address from the install description, the bar and the status line following the bytes, a
// temporary file of our own, the digest the description pins checked before anything runs
// (a file without a pin only when it came over https),
// and a box for every way it can go wrong. A cancelled download sets the runner's cancelled
// flag; every other failure lets the install go on.
class CDownloadAndRun
{
public:
    explicit CDownloadAndRun(CDependencyRunner& runner) : runner_(runner) {}

    // True when the program was fetched, checked, started and ended.
    bool Run(const HVString& displayName, const HVString& fileName, const HVString& arguments);

    // IsNetworkAlive of the system; true when the system can't tell. For tests only, the
    // environment variable IW_TEST_ONLY_NO_NETWORK=1 makes it report no network.
    static bool NetworkAlive();

    // Whether a finished download may be used: something arrived, all that was announced, and
    // its SHA-256 is the one the description pins for `fileName`; a file without a pin only
    // when it came over https all the way. Reopens `file` for reading, so what is checked is
    // what is used. Packages fetched from an address pass the same test.
    static bool Accept(const HVString& fileName, CTemporaryDownloadFile& file, const HVHttpReader::Outcome& outcome,
                       const HVInstallDescription& description);

private:
    void ShowFailure(const HVString& text) const;
    // The download into `file`; false after its failure box.
    bool Fetch(const HVString& displayName, const HVString& url, CTemporaryDownloadFile& file,
               HVHttpReader::Outcome& outcome);

    CDependencyRunner& runner_;
};
