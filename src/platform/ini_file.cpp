#include "platform/ini_file.h"

#include <algorithm>
#include <array>
#include <utility>

#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::uint32_t lockMilliseconds = 10'000;
constexpr int mostDamagedFiles = 1'000;

std::string shown(const std::filesystem::path& path)
{
    return toUtf8(displayFromNative(path.native()));
}

// One byte more than a file may have shows that it has too many.
Result<std::vector<std::byte>> readAll(ContentReader& reader)
{
    constexpr std::size_t step = 65536;
    std::vector<std::byte> bytes;
    for (;;) {
        const std::size_t before = bytes.size();
        bytes.resize(before + step);
        const Result<std::size_t> count = reader.read(std::span(bytes).subspan(before));
        if (!count)
            return count.error();
        bytes.resize(before + *count);
        if (*count < step || bytes.size() > IniDocument::mostBytes)
            return bytes;
    }
}

bool isSame(const FileInfo& a, const FileInfo& b)
{
    return a.identity == b.identity && a.size == b.size && a.modified == b.modified;
}

}  // namespace

IniFile::IniFile(FileSystem& files, FileOutput& output, const TextFolding& folding, std::filesystem::path path)
    : files_(files), output_(output), folding_(folding), path_(std::move(path)), document_(folding)
{
}

const IniDocument& IniFile::current()
{
    refresh();
    return document_;
}

Status IniFile::change(const Edit& edit)
{
    const Result<std::unique_ptr<FileLock>> held = lock();
    if (!held)
        return held.error();
    load();
    if (state_ == State::unreadable)
        return error_;
    IniDocument changed = document_;
    edit(changed);
    // Whatever comes of it, the file is read again before the next answer.
    seen_.reset();
    return replaceWith(changed);
}

std::string IniFile::complaint()
{
    refresh();
    const std::string name = "The settings file " + shown(path_);
    if (state_ == State::damaged)
        return name + " is damaged (" + error_.detail + ") and reads as empty; it will be kept under another name.";
    if (state_ == State::unreadable)
        return name + " cannot be read (" + error_.detail + "), and no settings are kept.";
    return keptAs_;
}

bool IniFile::isWritable()
{
    const Result<std::unique_ptr<FileLock>> held = lock();
    const Result<std::filesystem::path> target = output_.target(path_);
    if (!held || !target)
        return false;
    load();
    if (state_ == State::unreadable || !mayWrite(*target))
        return false;
    const std::filesystem::path trial = temporaryBeside(*target, 1);
    const Result<std::unique_ptr<OutputFile>> file = output_.create(trial);
    if (!file)
        return file.error().kind == ErrorKind::exists;
    return output_.remove(trial).ok();
}

// Every save makes another file of it, so a change by another process never goes unseen.
void IniFile::refresh()
{
    const Result<FileDetails> now = files_.details(path_, Links::followed);
    if (!now || !seen_ || !isSame(*now, *seen_))
        load();
}

void IniFile::load()
{
    seen_.reset();
    Result<std::unique_ptr<ContentReader>> reader =
        files_.openForReading(path_, ReadPattern::sequential, Links::followed);
    if (!reader) {
        takeAs(reader.error().kind == ErrorKind::notFound ? State::absent : State::unreadable, reader.error());
        return;
    }
    const Result<FileInfo> info = (*reader)->info();
    const Result<std::vector<std::byte>> bytes = readAll(**reader);
    if (!info || !bytes) {
        takeAs(State::unreadable, info ? bytes.error() : info.error());
        return;
    }
    accept(*bytes);
    seen_ = *info;
}

void IniFile::accept(const std::vector<std::byte>& bytes)
{
    Result<IniDocument> parsed = IniDocument::parse(bytes, folding_);
    if (!parsed) {
        takeAs(State::damaged, parsed.error());
        return;
    }
    document_ = std::move(*parsed);
    state_ = State::sound;
}

void IniFile::takeAs(State state, Error error)
{
    state_ = state;
    error_ = std::move(error);
    document_ = IniDocument(folding_);
}

// What a killed process left behind goes away here: while the lock is held nobody else is writing.
Result<std::unique_ptr<FileLock>> IniFile::lock()
{
    Result<std::unique_ptr<FileLock>> held = output_.lock(path_, lockMilliseconds);
    const Result<std::filesystem::path> target = output_.target(path_);
    if (held && target)
        static_cast<void>(output_.remove(temporaryBeside(*target, 1)));
    return held;
}

Status IniFile::replaceWith(const IniDocument& document)
{
    const std::vector<std::byte> bytes = document.serialise();
    if (bytes == document_.serialise())
        return {};
    if (!IniDocument::parse(bytes, folding_))
        return Error{ErrorKind::invalid, 0, "the settings have grown too large for a file"};
    const Result<std::filesystem::path> target = output_.target(path_);
    if (!target)
        return target.error();
    if (const Status allowed = mayWrite(*target); !allowed)
        return allowed;
    if (state_ == State::damaged) {
        if (const Status aside = setAside(*target); !aside)
            return aside;
    }
    return replaceContents(output_, *target, bytes);
}

// Where the folder is writable, a file could be replaced that its owner has protected from being written.
Status IniFile::mayWrite(const std::filesystem::path& target)
{
    if (state_ == State::absent)
        return {};
    Result<std::unique_ptr<OutputFile>> file = output_.append(target);
    return file ? (*file)->close() : Status(file.error());
}

Status IniFile::setAside(const std::filesystem::path& target)
{
    const Result<std::filesystem::path> name = reserveName(target);
    if (!name)
        return name.error();
    if (const Status moved = output_.replace(target, *name); !moved) {
        static_cast<void>(output_.remove(*name));
        return moved;
    }
    keptAs_ = "The settings file " + shown(path_) + " was damaged (" + error_.detail + ") and was kept as " +
              shown(*name) + ".";
    state_ = State::absent;
    return {};
}

// An empty file that is made under the new name holds it: renaming then replaces nothing but that.
Result<std::filesystem::path> IniFile::reserveName(const std::filesystem::path& target)
{
    for (int number = 1;; ++number) {
        std::filesystem::path name = target;
        name += number == 1 ? ".damaged" : ".damaged-" + std::to_string(number);
        const Result<std::unique_ptr<OutputFile>> file = output_.create(name);
        if (file)
            return name;
        if (file.error().kind != ErrorKind::exists || number == mostDamagedFiles)
            return file.error();
    }
}

}  // namespace kelvane
