// What lists, directories and queues cost beside a bare loop that makes the same calls and keeps the same texts, on a
// server that answers at once:
//
//   FloorBy20, FloorBy100     the bare loop over 100,000 stories, in chunks of 20 and of 100
//   Threaded, Synchronous     the same as a queue
//   ThreadedShort, SynchronousShort     as many stories in ten queues of 10,000, to see whether the cost of a story
//   grows SlowFloor, SlowThreaded   500 stories, 200 microseconds a call DirectoryFloor, DirectoryPopulate   20,000
//   entries SortOfKeys, SortUnique    100,000 search hits, a fifth of them double; std::stable_sort and std::unique of
//   the keys ScanNames, Find           the last of 100,000 names in other letter case ScanAttributes, FindByAttribute
//   an identifier that is not there
//
// Then how soon stories are visible, how long a reader waits while a worker loads, and the heap that a story takes. The
// exit code tells whether all bounds held.

#ifndef _WIN32
#include <malloc.h>
#endif

#include "../Comparison.h"
#include "Latency.h"

namespace {

/// Memory that is freed stays with the process: otherwise the kernel's clearing of pages is what is measured.
void keepMemory()
{
#ifdef __GLIBC__
    const int largest = 1 << 30;
    mallopt(M_TRIM_THRESHOLD, largest);
    mallopt(M_MMAP_THRESHOLD, largest);
    mallopt(M_ARENA_MAX, 1); // what a thread has of its own goes back to the kernel all the same
#endif
}

} // namespace

int main(int argc, char **argv)
{
    keepMemory();
    Comparison comparison;
    if (!comparison.run(argc, argv))
        return 2;
    bool held = comparison.holds("Threaded", "FloorBy20", 1.25);
    held &= comparison.holds("Synchronous", "FloorBy100", 1.25);
    held &= comparison.holds("SlowThreaded", "SlowFloor", 1.25);
    held &= comparison.holds("Threaded", "ThreadedShort", 1.1);
    held &= comparison.holds("Synchronous", "SynchronousShort", 1.1);
    held &= comparison.holds("DirectoryPopulate", "DirectoryFloor", 1.15);
    held &= comparison.holds("SortUnique", "SortOfKeys", 1.5);
    held &= comparison.holds("Find", "ScanNames", 1.3);
    held &= comparison.holds("FindByAttribute", "ScanAttributes", 1.3);
    held &= Latency::firstChunk();
    held &= Latency::reader();
    held &= Latency::heap();
    return held ? 0 : 1;
}
