#include "support/linux_archive_maker.h"

#include <archive.h>
#include <archive_entry.h>
#include <locale.h>
#include <memory>
#include <stdexcept>

namespace kelvane::testing {
namespace {

// Formats that keep names as Unicode convert them from the thread's locale.
class Utf8Locale {
public:
    Utf8Locale() : before_(::uselocale(locale_)) {}
    ~Utf8Locale()
    {
        ::uselocale(before_);
        ::freelocale(locale_);
    }
    Utf8Locale(const Utf8Locale&) = delete;
    Utf8Locale& operator=(const Utf8Locale&) = delete;

private:
    locale_t locale_ = ::newlocale(LC_CTYPE_MASK, "C.UTF-8", nullptr);
    locale_t before_;
};

void check(archive* handle, int code)
{
    if (code != ARCHIVE_OK)
        throw std::runtime_error(archive_error_string(handle) ? archive_error_string(handle) : "archive not made");
}

constexpr unsigned types[] = {AE_IFREG, AE_IFDIR, AE_IFLNK, AE_IFREG, AE_IFCHR};  // in the order of the kinds

void writeEntry(archive* handle, const MadeEntry& made)
{
    const std::unique_ptr<archive_entry, decltype(&archive_entry_free)> entry(archive_entry_new(), archive_entry_free);
    archive_entry_set_pathname(entry.get(), made.path.c_str());
    archive_entry_set_filetype(entry.get(), types[static_cast<std::size_t>(made.kind)]);
    archive_entry_set_perm(entry.get(), 0644);
    archive_entry_set_mtime(entry.get(), 1'700'000'000, 0);
    if (made.kind == MadeEntry::Kind::link)
        archive_entry_set_symlink(entry.get(), made.contents.c_str());
    if (made.kind == MadeEntry::Kind::hardLink)
        archive_entry_set_hardlink(entry.get(), made.contents.c_str());
    const bool hasData = made.kind == MadeEntry::Kind::file;
    archive_entry_set_size(entry.get(), hasData ? static_cast<la_int64_t>(made.contents.size()) : 0);
    check(handle, archive_write_header(handle, entry.get()));
    if (hasData && !made.contents.empty() && archive_write_data(handle, made.contents.data(), made.contents.size()) < 0)
        check(handle, ARCHIVE_FATAL);
}

void encrypt(archive* handle, const std::string& password)
{
    if (password.empty())
        return;
    check(handle, archive_write_set_options(handle, "zip:encryption=traditional"));
    check(handle, archive_write_set_passphrase(handle, password.c_str()));
}

la_ssize_t append(archive*, void* bytes, const void* piece, size_t size)
{
    static_cast<std::string*>(bytes)->append(static_cast<const char*>(piece), size);
    return static_cast<la_ssize_t>(size);
}

}  // namespace

void makeArchive(const std::filesystem::path& path, const std::vector<MadeEntry>& entries, const std::string& password)
{
    const Utf8Locale locale;
    const std::unique_ptr<archive, decltype(&archive_write_free)> handle(archive_write_new(), archive_write_free);
    check(handle.get(), archive_write_set_format_filter_by_ext(handle.get(), path.c_str()));
    if (path.native().find(".tar") != std::string::npos)  // takes names that are no UTF-8
        check(handle.get(), archive_write_set_options(handle.get(), "hdrcharset=BINARY"));
    encrypt(handle.get(), password);
    check(handle.get(), archive_write_open_filename(handle.get(), path.c_str()));
    for (const MadeEntry& entry : entries)
        writeEntry(handle.get(), entry);
    check(handle.get(), archive_write_close(handle.get()));
}

std::string makeZip(const std::vector<MadeEntry>& entries, bool stored, const std::string& password)
{
    const Utf8Locale locale;
    std::string bytes;
    const std::unique_ptr<archive, decltype(&archive_write_free)> handle(archive_write_new(), archive_write_free);
    check(handle.get(), archive_write_set_format_zip(handle.get()));
    check(handle.get(), archive_write_set_options(handle.get(), stored ? "compression=store" : "compression=deflate"));
    encrypt(handle.get(), password);
    check(handle.get(), archive_write_set_bytes_in_last_block(handle.get(), 1));  // no padding
    check(handle.get(), archive_write_open(handle.get(), &bytes, nullptr, append, nullptr));
    for (const MadeEntry& entry : entries)
        writeEntry(handle.get(), entry);
    check(handle.get(), archive_write_close(handle.get()));
    return bytes;
}

}  // namespace kelvane::testing
