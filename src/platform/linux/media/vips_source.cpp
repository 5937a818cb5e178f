#include "platform/linux/media/vips_source.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <gmodule.h>
#include <malloc.h>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vips/vector.h>

namespace kelvane::linux_os {
namespace {

// The library's own readers of formats that pictures are kept in. What is not here hands files on to a large program of
// its own (documents, slides, ImageMagick's hundred formats), or reads tables of numbers.
constexpr std::array allowedReaders{"VipsForeignLoadJpeg", "VipsForeignLoadPng",  "VipsForeignLoadNsgif",
                                    "VipsForeignLoadWebp", "VipsForeignLoadTiff", "VipsForeignLoadHeif",
                                    "VipsForeignLoadJxl",  "VipsForeignLoadSvg",  "VipsForeignLoadJp2k",
                                    "VipsForeignLoadPpm",  "VipsForeignLoadRad"};

// Of the library's modules. Those for documents, slides and ImageMagick take half a second to load.
constexpr std::array neededModules{"vips-heif.so", "vips-jxl.so"};

// Points the library's search for modules to where there are none while it starts.
class NoModules {
public:
    NoModules()
    {
        if (const char* home = std::getenv(variable))
            before_ = home;
        ::setenv(variable, "/nonexistent", 1);
    }
    ~NoModules()
    {
        if (before_)
            ::setenv(variable, before_->c_str(), 1);
        else
            ::unsetenv(variable);
    }
    NoModules(const NoModules&) = delete;
    NoModules& operator=(const NoModules&) = delete;

private:
    static constexpr const char* variable = "VIPSHOME";
    std::optional<std::string> before_;
};

// They lie in a folder beside the library, which is named after the library's version.
std::string moduleFolder()
{
    Dl_info library{};
    if (::dladdr(reinterpret_cast<void*>(&vips_init), &library) == 0 || library.dli_fname == nullptr)
        return {};
    const std::string path = library.dli_fname;
    return path.substr(0, path.rfind('/') + 1) + "vips-modules-" + std::to_string(vips_version(0)) + "." +
           std::to_string(vips_version(1)) + "/";
}

// One that is not installed leaves its formats unknown.
void loadModules()
{
    const std::string folder = moduleFolder();
    for (const char* name : neededModules)
        if (GModule* module = g_module_open((folder + name).c_str(), G_MODULE_BIND_LAZY))
            g_module_make_resident(module);
}

void allowFewReaders()
{
    vips_operation_block_set("VipsForeignLoad", TRUE);
    for (const char* reader : allowedReaders)
        vips_operation_block_set(reader, FALSE);
}

// Warnings about strange files are for nobody.
void dropMessage(const gchar*, GLogLevelFlags, const gchar*, gpointer) {}

bool start()
{
    // Every further arena would reserve 64 MiB of a limited address space.
    ::mallopt(M_ARENA_MAX, 1);
    g_log_set_default_handler(&dropMessage, nullptr);
    const NoModules none;
    if (VIPS_INIT("kelvane") != 0)
        return false;
    loadModules();
    allowFewReaders();
    vips_concurrency_set(1);
    vips_cache_set_max(0);
    vips_vector_set_enabled(FALSE);
    return true;
}

// Where in the file the library reads next. Belongs to the source.
struct FilePosition {
    RandomAccessFile& file;
    std::uint64_t position = 0;
};

gint64 readBytes(VipsSourceCustom*, void* buffer, gint64 length, gpointer data)
{
    auto& reader = *static_cast<FilePosition*>(data);
    const std::span<std::byte> room(static_cast<std::byte*>(buffer), static_cast<std::size_t>(length));
    const Result<std::size_t> count = reader.file.readAt(reader.position, room);
    if (!count) {
        errno = EIO;
        return -1;
    }
    reader.position += *count;
    return static_cast<gint64>(*count);
}

gint64 moveTo(VipsSourceCustom*, gint64 offset, int whence, gpointer data)
{
    auto& reader = *static_cast<FilePosition*>(data);
    const auto size = static_cast<gint64>(reader.file.size());
    const gint64 start = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? static_cast<gint64>(reader.position) : size;
    // A damaged file may point anywhere; what lies behind the end reads as empty.
    if (offset < -start || offset > INT64_MAX - start) {
        errno = EINVAL;
        return -1;
    }
    reader.position = static_cast<std::uint64_t>(start + offset);
    return start + offset;
}

void forget(gpointer data, GClosure*)
{
    delete static_cast<FilePosition*>(data);
}

}  // namespace

bool startVips()
{
    static const bool running = start();
    return running;
}

VipsSourceHandle makeVipsSource(RandomAccessFile& file)
{
    VipsSourceCustom* source = vips_source_custom_new();
    auto reader = std::make_unique<FilePosition>(FilePosition{file});
    g_signal_connect(source, "seek", G_CALLBACK(moveTo), reader.get());
    g_signal_connect_data(source, "read", G_CALLBACK(readBytes), reader.release(), &forget, GConnectFlags{});
    return VipsSourceHandle(VIPS_SOURCE(source));
}

MediaFault takeVipsFault()
{
    std::string text = vips_error_buffer();
    vips_error_clear();
    while (!text.empty() && text.back() == '\n')
        text.pop_back();
    const auto says = [&](std::string_view words) { return text.find(words) != std::string::npos; };
    // There are no numbers to go by: the words are those of the library, of libjpeg, libpng, libheif and libtiff.
    if (says("ut of memory") || says("nsufficient memory") || says("emory allocation") || says("allocate memory"))
        return {MediaOutcome::tooMuchMemory, {}, std::move(text)};
    if (says("Unsupported codec") || says("No decoding plugin"))
        return {MediaOutcome::codecMissing, "HEIF", std::move(text)};
    if (says("is not configured"))
        return {MediaOutcome::codecMissing, "TIFF", std::move(text)};
    return {MediaOutcome::damaged, {}, std::move(text)};
}

}  // namespace kelvane::linux_os
