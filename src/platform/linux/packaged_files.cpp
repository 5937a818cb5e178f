#include "platform/packaged_files.h"

#include <algorithm>
#include <archive.h>
#include <archive_entry.h>
#include <array>
#include <cerrno>
#include <cstdio>
#include <memory>
#include <new>
#include <optional>
#include <string>

#include "platform/linux/adapters.h"
#include "platform/linux/utf8_names.h"

namespace kelvane {
namespace linux_os {
namespace {

// More parts than a zip could have before its 64-bit extension: no document has so many.
constexpr unsigned mostParts = 65'535;
// Of all parts that are read, together.
constexpr std::uint64_t mostUnpacked = std::uint64_t{512} * 1024 * 1024;
constexpr std::size_t pieceSize = 64 * 1024;

// What the library reads from. Its positions never leave the file.
class Source {
public:
    explicit Source(RandomAccessFile& file) : file_(file) {}

    static la_ssize_t read(archive* handle, void* self, const void** bytes)
    {
        auto& source = *static_cast<Source*>(self);
        const auto got = source.file_.readAt(source.position_, source.piece_);
        if (!got) {
            archive_set_error(handle, EIO, "%s", got.error().detail.c_str());
            return ARCHIVE_FATAL;
        }
        source.position_ += *got;
        *bytes = source.piece_.data();
        return static_cast<la_ssize_t>(*got);
    }

    static la_int64_t seek(archive*, void* self, la_int64_t offset, int whence)
    {
        auto& source = *static_cast<Source*>(self);
        const auto size = static_cast<la_int64_t>(source.file_.size());
        const auto position = static_cast<la_int64_t>(source.position_);
        const la_int64_t from = whence == SEEK_SET ? 0 : whence == SEEK_CUR ? position : size;
        if (offset < -from || offset > size - from)
            return ARCHIVE_FATAL;
        source.position_ = static_cast<std::uint64_t>(from + offset);
        return from + offset;
    }

private:
    RandomAccessFile& file_;
    std::uint64_t position_ = 0;
    std::array<std::byte, pieceSize> piece_;
};

class Package {
public:
    explicit Package(RandomAccessFile& file) : source_(file), handle_(archive_read_new())
    {
        if (!handle_)
            throw std::bad_alloc();
    }

    // Only by the table at the file's end: what a stream of parts would give without it may be anything.
    Status open()
    {
        archive* handle = handle_.get();
        archive_read_support_format_zip_seekable(handle);
        archive_read_set_read_callback(handle, Source::read);
        archive_read_set_seek_callback(handle, Source::seek);
        archive_read_set_callback_data(handle, &source_);
        return archive_read_open1(handle) == ARCHIVE_OK ? Status() : lastError();
    }

    // False at the end.
    Result<bool> next()
    {
        const int code = archive_read_next_header(handle_.get(), &entry_);
        if (code == ARCHIVE_EOF)
            return false;
        if (code != ARCHIVE_OK && code != ARCHIVE_WARN)
            return lastError();
        if (++parts_ > mostParts)
            return Error{ErrorKind::invalid, 0, "too many parts"};
        return true;
    }

    [[nodiscard]] bool atFile() const { return archive_entry_filetype(entry_) == AE_IFREG; }

    [[nodiscard]] std::string_view name() const
    {
        const char* path = archive_entry_pathname(entry_);
        return path ? std::string_view(path) : std::string_view();
    }

    [[nodiscard]] bool encrypted() const { return archive_entry_is_encrypted(entry_) != 0; }

    // As much as there is, up to the size of the buffer.
    Result<std::size_t> read(std::span<std::byte> buffer)
    {
        const la_ssize_t got = archive_read_data(handle_.get(), buffer.data(), buffer.size());
        if (got < 0)
            return lastError();
        unpacked_ += static_cast<std::uint64_t>(got);
        if (unpacked_ > mostUnpacked)
            return Error{ErrorKind::invalid, 0, "the package unpacks to too much"};
        return static_cast<std::size_t>(got);
    }

private:
    struct Free {
        void operator()(archive* handle) const { archive_read_free(handle); }
    };

    // The library's codes are no errno, hence only its text is passed on.
    [[nodiscard]] Error lastError() const
    {
        const char* text = archive_error_string(handle_.get());
        return {ErrorKind::invalid, 0, text ? text : "damaged package"};
    }

    Source source_;  // outlives the handle that reads from it
    std::unique_ptr<archive, Free> handle_;
    archive_entry* entry_ = nullptr;  // owned by the handle
    unsigned parts_ = 0;
    std::uint64_t unpacked_ = 0;
};

// A failed reading is remembered: the walk goes on to other parts, but does not end as if nothing had happened.
class OpenPart final : public PackagePart {
public:
    OpenPart(Package& package, std::optional<Error>& fault) : package_(package), fault_(fault), name_(package.name()) {}

    std::string_view name() const override { return name_; }

    Result<std::vector<std::byte>> read(std::uint64_t limit, bool* cut) override
    {
        auto bytes = package_.encrypted()
                         ? Result<std::vector<std::byte>>(Error{ErrorKind::accessDenied, 0, "encrypted"})
                         : content(limit, cut);
        if (!bytes && !fault_)
            fault_ = bytes.error();
        return bytes;
    }

private:
    // The length that the package claims is not believed: memory grows with what comes.
    Result<std::vector<std::byte>> content(std::uint64_t limit, bool* cut)
    {
        std::vector<std::byte> bytes;
        for (;;) {
            const std::size_t before = bytes.size();
            const bool beyond = before >= limit;  // one byte more tells whether there is more
            bytes.resize(before +
                         (beyond ? 1 : static_cast<std::size_t>(std::min<std::uint64_t>(limit - before, pieceSize))));
            const auto got = package_.read(std::span(bytes).subspan(before));
            if (!got)
                return got.error();
            bytes.resize(beyond ? before : before + *got);
            if (*got == 0 || beyond) {
                if (cut)
                    *cut = *got > 0;
                return bytes;
            }
        }
    }

    Package& package_;
    std::optional<Error>& fault_;
    const std::string name_;
};

// False when the sink has had enough.
bool give(Package& package, std::optional<Error>& fault, const PackagedFiles::PartSink& sink)
{
    if (!package.atFile())
        return true;
    OpenPart part(package, fault);
    return sink(part);
}

class LibarchivePackages final : public PackagedFiles {
public:
    Status walk(RandomAccessFile& file, const PartSink& sink) override
    {
        const Utf8Names names;
        Package package(file);
        if (auto opened = package.open(); !opened)
            return opened;
        std::optional<Error> fault;
        for (;;) {
            const auto more = package.next();
            if (!more)
                return more.error();
            if (!*more || !give(package, fault, sink))
                return fault ? Status(*fault) : Status();
        }
    }
};

}  // namespace
}  // namespace linux_os

std::unique_ptr<PackagedFiles> makeLibarchivePackages()
{
    return std::make_unique<linux_os::LibarchivePackages>();
}

}  // namespace kelvane
