#pragma once

#include "foundation/HVString.h"

#include <cstdint>

class CDependencyRunner;
class CTemporaryDownloadFile;

// Fetches a dependency's setup program from the maker's download server and runs it: the
// address from the install description, the bar and the status line following the bytes, a
// temporary file of our own, the digest the description pins checked before anything runs,
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

private:
    void ShowFailure(const HVString& text) const;
    // The download into `file`; false after its failure box.
    bool Fetch(const HVString& displayName, const HVString& url, CTemporaryDownloadFile& file, uint64_t& received,
               uint64_t& announced);
    // Something arrived, all that was announced, with the pinned digest when there is one.
    bool Verify(const HVString& fileName, CTemporaryDownloadFile& file, uint64_t received, uint64_t announced) const;

    CDependencyRunner& runner_;
};
