// libvips over files that are read through RandomAccessFile, set up for files that nobody vouches for.
#pragma once

#include <memory>
#include <vips/vips.h>

#include "platform/media_decoding.h"

namespace kelvane::linux_os {

struct VipsUnref {
    void operator()(void* object) const { g_object_unref(object); }
};
using VipsImageHandle = std::unique_ptr<VipsImage, VipsUnref>;
using VipsSourceHandle = std::unique_ptr<VipsSource, VipsUnref>;

// Starts the library, once in a process, and says whether it runs: one thread (files are spread over processes
// instead), no cache between files, no code made while running (executable memory may be refused), and no readers but
// those of common pictures. Opens two modules of the library, which read HEIC, AVIF and JPEG XL: a process that may
// not open them any more should have called it before. Limits of address space have to leave 300 MiB for code.
[[nodiscard]] bool startVips();

// A source that reads the file, which outlives it and every image that is loaded from it. The library has to run.
[[nodiscard]] VipsSourceHandle makeVipsSource(RandomAccessFile& file);

// What the library says of its failures since the last call, and what follows from that; never `made`.
[[nodiscard]] MediaFault takeVipsFault();

}  // namespace kelvane::linux_os
