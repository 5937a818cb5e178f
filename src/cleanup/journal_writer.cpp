#include "cleanup/journal_writer.h"

#include <algorithm>
#include <charconv>
#include <string>

#include "platform/native_text.h"

namespace kelvane {
namespace {

constexpr std::string_view endedSuffix = ".kvrun";
constexpr std::string_view openSuffix = ".kvrun.open";

Error senseless()
{
    return {ErrorKind::invalid, 0, "no such step follows in the journal"};
}

// The first bytes of a file.
Result<std::vector<std::byte>> readFirst(FileSystem& files, const std::filesystem::path& path, std::uint64_t count)
{
    const auto reader = files.openForReading(path, ReadPattern::sequential);
    if (!reader)
        return reader.error();
    std::vector<std::byte> bytes(static_cast<std::size_t>(count));
    const auto got = (*reader)->read(bytes);
    if (!got)
        return got.error();
    if (*got < bytes.size())
        return Error{ErrorKind::changed, 0, "the journal became shorter"};
    return bytes;
}

class Writer final : public JournalWriter {
public:
    Writer(const JournalPorts& ports, JournalFile file, std::unique_ptr<FileLock> lock, RunNumber number)
        : ports_(ports), file_(std::move(file)), lock_(std::move(lock)), number_(number)
    {
    }

    Status create(CleanupAction action, FileTime now)
    {
        auto made = ports_.output.create(file_.open());
        if (!made)
            return made.error();
        output_ = std::move(*made);
        const Status written = output_->write(chain_.header(number_, action, now));
        const Status flushed = written ? output_->flush() : written;
        return flushed ? ports_.output.flushFolder(file_.folder()) : flushed;
    }

    void resume(const FoundJournal& found)
    {
        const JournalReading& reading = found.reading;
        chain_ = reading.chain;
        sound_ = reading.sound;
        cut_ = reading.cut;
        ended_ = found.ended;
        lastIsEnd_ = reading.run.ended;
        action_ = reading.run.action;
        started_ = reading.run.started;
        states_.reserve(reading.run.entries.size());
        for (const JournalEntry& entry : reading.run.entries)
            states_.push_back(entry.state);
    }

    RunNumber number() const override { return number_; }

    Result<EntryNumber> intend(const JournalIntent& intent) override
    {
        if (const Status written = append(intentBody(intent)); !written)
            return written.error();
        states_.push_back(EntryState::intended);
        return static_cast<EntryNumber>(states_.size() - 1);
    }

    Status placing(EntryNumber entry, const std::filesystem::path& trashed) override
    {
        if (!isIn(entry, EntryState::intended))
            return senseless();
        return append(placingBody(entry, trashed));
    }

    Status finish(EntryNumber entry, EntryState state, LinkKind link, const std::filesystem::path& trashed) override
    {
        const auto index = static_cast<std::size_t>(entry);
        if (index >= states_.size() || !mayFinish(states_[index], state))
            return senseless();
        return become(entry, state, finishBody(entry, state, link, trashed));
    }

    Status intendUndo(EntryNumber entry, const NativeString& temporary) override
    {
        return become(entry, EntryState::undoIntended, undoIntentBody(entry, temporary));
    }

    Status finishUndo(EntryNumber entry, EntryState state) override
    {
        if (!isIn(entry, EntryState::undoIntended))
            return senseless();
        return become(entry, state, undoFinishBody(entry, state));
    }

    Status flush() override
    {
        if (failed_ || !output_)
            return failed_ ? Status(*failed_) : Status();
        return kept(output_->flush());
    }

    Status end() override
    {
        if (failed_)
            return *failed_;
        const auto undecided = [](EntryState state) {
            return state == EntryState::intended || state == EntryState::undoIntended;
        };
        if (std::any_of(states_.begin(), states_.end(), undecided))
            return flush();
        if (ended_ && lastIsEnd_ && !cut_)
            return {};
        if (const Status written = append(plainBody(RecordType::end)); !written)
            return written;
        lastIsEnd_ = true;
        return kept(putAway());
    }

private:
    [[nodiscard]] bool isIn(EntryNumber entry, EntryState state) const
    {
        const auto index = static_cast<std::size_t>(entry);
        return index < states_.size() && states_[index] == state;
    }

    Status become(EntryNumber entry, EntryState state, const RecordBody& body)
    {
        const auto index = static_cast<std::size_t>(entry);
        if (index >= states_.size() || !mayBecome(states_[index], state))
            return senseless();
        const Status written = append(body);
        if (written)
            states_[index] = state;
        return written;
    }

    // One call of write() a record, so that what a crash leaves is cut off at most in the last one.
    Status append(const RecordBody& body)
    {
        if (failed_)
            return *failed_;
        if (body.size() > mostRecordBytes)
            return Error{ErrorKind::notSupported, 0, "too much to write down for one item"};
        if (const Status ready = kept(makeReady()); !ready)
            return ready;
        lastIsEnd_ = false;
        return kept(output_->write(chain_.record(body)));
    }

    // A run that came to its end is an unfinished one again before anything is added to it.
    Status makeReady()
    {
        if (output_)
            return {};
        if (ended_) {
            if (const Status renamed = ports_.output.replace(file_.ended(), file_.open()); !renamed)
                return renamed;
            ended_ = false;
            if (const Status flushed = ports_.output.flushFolder(file_.folder()); !flushed)
                return flushed;
        }
        if (const Status whole = cut_ ? repair() : Status(); !whole)
            return whole;
        auto opened = ports_.output.append(file_.open());
        if (!opened)
            return opened.error();
        output_ = std::move(*opened);
        return {};
    }

    // What is cut off would hide all that is written behind it.
    Status repair()
    {
        auto bytes = readFirst(ports_.files, file_.open(), sound_);
        if (!bytes)
            return bytes.error();
        if (bytes->empty())
            *bytes = chain_.header(number_, action_, started_);
        const auto note = chain_.record(plainBody(RecordType::repaired));
        bytes->insert(bytes->end(), note.begin(), note.end());
        cut_ = false;
        return replaceContents(ports_.output, file_.open(), *bytes);
    }

    Status putAway()
    {
        if (const Status flushed = output_->flush(); !flushed)
            return flushed;
        // Some systems rename no file that is open.
        const Status closed = output_->close();
        output_.reset();
        const Status renamed = closed ? ports_.output.replace(file_.open(), file_.ended()) : closed;
        ended_ = renamed.ok();
        return renamed ? ports_.output.flushFolder(file_.folder()) : renamed;
    }

    Status kept(Status status)
    {
        if (!status)
            failed_ = status.error();
        return status;
    }

    JournalPorts ports_;
    JournalFile file_;
    std::unique_ptr<FileLock> lock_;
    RunNumber number_{};
    RecordChain chain_;
    std::unique_ptr<OutputFile> output_;  // after the lock, so that it is closed while the lock is held
    std::vector<EntryState> states_;
    std::optional<Error> failed_;
    // Of a run that is gone on with.
    CleanupAction action_ = CleanupAction::recycle;
    FileTime started_;
    std::uint64_t sound_ = 0;
    bool cut_ = false;
    bool ended_ = false;  // has the name of those
    bool lastIsEnd_ = false;
};

std::filesystem::path named(const std::filesystem::path& folder, RunNumber number, std::string_view suffix)
{
    return folder / nativeFromBytes(std::to_string(static_cast<std::uint32_t>(number)).append(suffix));
}

}  // namespace

JournalFile::JournalFile(const std::filesystem::path& folder, RunNumber number)
    : ended_(named(folder, number, endedSuffix)), open_(named(folder, number, openSuffix))
{
}

std::optional<JournalName> journalNameOf(NativeView name)
{
    const std::string bytes = bytesFromNative(name);
    std::uint32_t number = 0;
    const auto [end, error] = std::from_chars(bytes.data(), bytes.data() + bytes.size(), number);
    if (error != std::errc() || number == 0 || bytes.front() == '0')
        return std::nullopt;
    const std::string_view suffix = std::string_view(bytes).substr(static_cast<std::size_t>(end - bytes.data()));
    if (suffix != endedSuffix && suffix != openSuffix)
        return std::nullopt;
    return JournalName{static_cast<RunNumber>(number), suffix == endedSuffix};
}

Result<FoundJournal> findJournal(FileSystem& files, const JournalFile& file, RunNumber number)
{
    // Twice, since a run may come to its end, or be gone on with, between two looks.
    Error last;
    for (const bool ended : {false, true, false, true}) {
        const auto reader = files.openForReading(ended ? file.ended() : file.open(), ReadPattern::sequential);
        if (!reader && reader.error().kind != ErrorKind::notFound)
            return reader.error();
        if (!reader) {
            last = reader.error();
            continue;
        }
        auto reading = readJournal(**reader);
        if (!reading)
            return reading.error();
        reading->run.number = number;  // names count: a copied file is not the run that it was copied from
        return FoundJournal{std::move(*reading), ended};
    }
    return last;
}

Result<std::unique_ptr<JournalWriter>> beginJournal(const JournalPorts& ports, JournalFile file,
                                                    std::unique_ptr<FileLock> lock, RunNumber number,
                                                    CleanupAction action, FileTime now)
{
    const std::filesystem::path path = file.open();
    auto writer = std::make_unique<Writer>(ports, std::move(file), std::move(lock), number);
    const Status made = writer->create(action, now);
    if (made)
        return std::unique_ptr<JournalWriter>(std::move(writer));
    if (made.error().kind != ErrorKind::exists) {
        writer.reset();
        (void)ports.output.remove(path);
    }
    return made.error();
}

std::unique_ptr<JournalWriter> continueJournal(const JournalPorts& ports, JournalFile file,
                                               std::unique_ptr<FileLock> lock, const FoundJournal& found)
{
    auto writer = std::make_unique<Writer>(ports, std::move(file), std::move(lock), found.reading.run.number);
    writer->resume(found);
    return writer;
}

}  // namespace kelvane
