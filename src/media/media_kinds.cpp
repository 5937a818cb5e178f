#include "media/media_kinds.h"

#include <algorithm>
#include <iterator>
#include <string>

#include "text/file_kinds.h"

namespace kelvane {
namespace {

constexpr std::string_view soundEndings[] = {
    "aac", "ac3", "aif", "aifc", "aiff", "alac", "amr", "ape",  "au", "caf", "dff", "dsf", "dts", "flac", "m4a", "m4b",
    "mka", "mp2", "mp3", "mpa",  "mpc",  "oga",  "ogg", "opus", "ra", "snd", "spx", "tta", "wav", "wma",  "wv"};
constexpr std::string_view filmEndings[] = {"3g2", "3gp", "asf", "avi",  "divx", "dv",   "f4v",  "flv", "m2ts", "m2v",
                                            "m4v", "mkv", "mov", "mp4",  "mpe",  "mpeg", "mpg",  "mts", "mxf",  "ogm",
                                            "ogv", "qt",  "rm",  "rmvb", "ts",   "vob",  "webm", "wmv"};
constexpr std::string_view pictureEndings[] = {
    "3fr", "apng", "arw",  "avif", "bmp",  "cr2",  "cr3", "crw",  "dib",  "dng",  "erf", "exr",
    "gif", "hdr",  "heic", "heif", "jfif", "jp2",  "jpe", "jpeg", "jpg",  "jxl",  "kdc", "mos",
    "mrw", "nef",  "nrw",  "orf",  "pbm",  "pef",  "pgm", "png",  "pnm",  "ppm",  "raf", "raw",
    "rw2", "sr2",  "srf",  "srw",  "svg",  "svgz", "tga", "tif",  "tiff", "webp", "x3f"};

template <std::size_t count>
bool holds(const std::string_view (&extensions)[count], std::string_view extension)
{
    return std::binary_search(std::begin(extensions), std::end(extensions), extension);
}

}  // namespace

MediaKind mediaKindOf(std::string_view fileName)
{
    const std::string extension = extensionOf(fileName);
    if (holds(soundEndings, extension))
        return MediaKind::sound;
    if (holds(filmEndings, extension))
        return MediaKind::film;
    return holds(pictureEndings, extension) ? MediaKind::picture : MediaKind::none;
}

}  // namespace kelvane
