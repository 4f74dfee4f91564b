#pragma once

#include "ZellBase/Export.h"

// What keeps a process that leaves without stopping its engine from running code of objects that are gone.
namespace Zell::Base::details {

// Marks the calling thread as one that runs work of the libraries, for the life of the object. The first one
// in a process registers an exit handler: once the process is leaving (exit, return from main), the handler
// raises a flag and waits, a second at most, until each such thread has come to a park point, has ended, or
// is blocked inside a sibling; it joins nothing.
class ZELLBASE_API CWorkerMark
{
public:
    CWorkerMark();
    CWorkerMark(const CWorkerMark&) = delete;
    CWorkerMark& operator=(const CWorkerMark&) = delete;
    ~CWorkerMark();
};

// A stretch in which a marked thread waits inside a sibling (a transfer, a sleep, a process) and touches
// nothing but that sibling's own immortal state. Its end is a park point.
class ZELLBASE_API CBlockedMark
{
public:
    CBlockedMark();
    CBlockedMark(const CBlockedMark&) = delete;
    CBlockedMark& operator=(const CBlockedMark&) = delete;
    ~CBlockedMark();
};

// Never returns on a marked thread once the process is leaving; otherwise returns at once. Every log line and
// every state report is a park point.
ZELLBASE_API void ParkIfLeaving();

}  // namespace Zell::Base::details
