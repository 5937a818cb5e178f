// How sound, films and pictures are taken out of files.
#pragma once

#include <chrono>
#include <cstdint>

namespace kelvane {

// As plain values: nothing here knows of settings.
struct MediaOptions {
    std::int64_t songStartMs = 14'900;          // of a song that is compared; see SongOpening
    std::chrono::milliseconds timeout{12'000};  // for one file in a worker; 0: none
    std::uint64_t workerMemory = 1'536u * 1'048'576u;
    // Bytes of an entry of an archive: decoders read here and there, so that one is unpacked into memory, one for each
    // thread that asks.
    std::uint64_t largestEntry = 64u * 1'048'576u;
    unsigned workers = 0;  // at most so many at once; 0: by the number of processors
};

}  // namespace kelvane
