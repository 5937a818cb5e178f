#include "platform/file_output.h"

#include <string>

namespace kelvane {
namespace {

constexpr unsigned mostAttempts = 100;

struct NewFile {
    std::filesystem::path path;
    std::unique_ptr<OutputFile> file;
};

Result<NewFile> createBeside(FileOutput& output, const std::filesystem::path& path)
{
    for (unsigned attempt = 1;; ++attempt) {
        const std::filesystem::path name = temporaryBeside(path, attempt);
        Result<std::unique_ptr<OutputFile>> file = output.create(name);
        if (file)
            return NewFile{name, std::move(*file)};
        if (file.error().kind != ErrorKind::exists || attempt == mostAttempts)
            return file.error();
    }
}

// The rights come first: until then only its owner may read the file, and it is empty.
Status fill(FileOutput& output, NewFile& made, const std::filesystem::path& target, std::span<const std::byte> bytes)
{
    if (const Status access = output.copyAccess(target, made.path);
        !access && access.error().kind != ErrorKind::notFound)
        return access;
    if (const Status written = made.file->write(bytes); !written)
        return written;
    if (const Status flushed = made.file->flush(); !flushed)
        return flushed;
    return made.file->close();
}

}  // namespace

std::filesystem::path temporaryBeside(const std::filesystem::path& path, unsigned attempt)
{
    std::filesystem::path name = path;
    name += ".kvnew";
    if (attempt > 1)
        name += "-" + std::to_string(attempt);
    return name;
}

Status replaceContents(FileOutput& output, const std::filesystem::path& path, std::span<const std::byte> bytes)
{
    const Result<std::filesystem::path> target = output.target(path);
    if (!target)
        return target.error();
    Result<NewFile> made = createBeside(output, *target);
    if (!made)
        return made.error();
    Status done = fill(output, *made, *target, bytes);
    made->file.reset();
    if (done)
        done = output.replace(made->path, *target);
    if (!done) {
        // The first failure is the one to tell; a file that cannot even be removed does no harm under its name.
        static_cast<void>(output.remove(made->path));
        return done;
    }
    return output.flushFolder(target->parent_path());
}

}  // namespace kelvane
