// What the containers of films (Matroska, AVI and the like) say of their contents in words.
#pragma once

extern "C" {
#include <libavformat/avformat.h>
}

#include "platform/fact_list.h"

namespace kelvane::linux_os {

void addFilmTags(const AVFormatContext& format, FactList& facts);

}  // namespace kelvane::linux_os
