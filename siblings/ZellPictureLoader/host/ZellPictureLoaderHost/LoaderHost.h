#pragma once

#include "ZellPictureLoader/Export.h"

#include <chrono>
#include <cstddef>
#include <cstdint>

// The picture loader, as the program that hosts it sees it. Any thread.
namespace ZellPictureLoader {

// How much the loader may hold. Pictures in the cache lie on disk; what waits to be written there is in
// memory and takes a few MiB at most.
struct LoaderBounds
{
    std::uint64_t cache_bytes = 256u << 20;
    std::size_t cache_files = 20000;
    // Above that, nothing is fetched ahead, and what is handed out at once is not cached; what is under way
    // comes on top, half a MiB for each transfer at most.
    std::size_t memory_bytes = 8u << 20;
    std::size_t connections = 16;     // of the warm-up; a picture that somebody waits for has its own
    std::size_t queued_keys = 10000;  // pictures that wait for the warm-up; further ones are passed over
    // How long a picture that was fetched ahead and not asked for keeps its place against newer ones, and how
    // long one that waits for the warm-up is still wanted: an export that was stopped never asks.
    std::chrono::milliseconds keep_unasked = std::chrono::minutes(5);
};

// The bounds of the next start of the library; the run in progress keeps its own.
ZELLPICTURELOADER_API void SetLoaderBounds(const LoaderBounds& bounds);

// What the run in progress did and holds, or all zero when the library is not running.
struct LoaderStatistics
{
    std::uint64_t requests = 0;       // transfers begun
    std::uint64_t warm_requests = 0;  // of these, by the warm-up
    std::uint64_t failures = 0;       // transfers that ended without a picture
    std::uint64_t cache_hits = 0;     // asked for and already there
    std::uint64_t joined = 0;         // asked for while its transfer was under way
    std::uint64_t evictions = 0;      // pictures that made room for others
    std::uint64_t cached_bytes = 0;   // on disk
    std::size_t cached_files = 0;
    std::size_t queued = 0;   // wait for the warm-up
    std::size_t running = 0;  // transfers under way
};
ZELLPICTURELOADER_API LoaderStatistics GetLoaderStatistics();

// Waits until no transfer is under way and what arrived is in the cache; pictures that wait for room may
// remain queued. False if the time is over first.
ZELLPICTURELOADER_API bool WaitUntilQuiet(std::chrono::milliseconds timeout);

}  // namespace ZellPictureLoader
