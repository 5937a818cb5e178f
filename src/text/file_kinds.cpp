#include "text/file_kinds.h"

#include <algorithm>

#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::string_view textless[] = {
    // in the order of the alphabet
    "3gp",   "7z",   "aac",  "aif",  "aiff", "ape", "apk",  "arw",  "avi",   "avif", "bmp",  "bz2",  "cab", "class",
    "cr2",   "cr3",  "deb",  "dll",  "dng",  "exe", "flac", "flv",  "gif",   "gz",   "heic", "heif", "ico", "iso",
    "jar",   "jp2",  "jpeg", "jpg",  "jxl",  "m4a", "m4v",  "mid",  "mkv",   "mov",  "mp2",  "mp3",  "mp4", "mpc",
    "mpeg",  "mpg",  "msi",  "nef",  "o",    "oga", "ogg",  "ogv",  "opus",  "orf",  "otf",  "png",  "psd", "pyc",
    "qcow2", "raf",  "rar",  "raw",  "rpm",  "rw2", "so",   "sys",  "tar",   "tga",  "tif",  "tiff", "ttf", "vdi",
    "vhd",   "vmdk", "wav",  "webm", "webp", "wma", "wmv",  "woff", "woff2", "wv",   "xcf",  "xz",   "zip", "zst"};

char small(char c)
{
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}

}  // namespace

std::string lastName(const ShellItem& item)
{
    // A root's name is its whole path.
    if (!item.parent())
        return bytesFromNative(item.path().filename().native());
    return bytesFromNative(item.name());
}

std::string extensionOf(std::string_view fileName)
{
    const std::size_t dot = fileName.rfind('.');
    if (dot == std::string_view::npos || fileName.size() - dot > 16)
        return {};
    std::string extension(fileName.substr(dot + 1));
    std::transform(extension.begin(), extension.end(), extension.begin(), small);
    return extension;
}

bool contains(const std::vector<std::string>& extensions, std::string_view extension)
{
    return std::find(extensions.begin(), extensions.end(), extension) != extensions.end();
}

bool neverHoldsText(std::string_view extension)
{
    return std::binary_search(std::begin(textless), std::end(textless), extension);
}

}  // namespace kelvane
