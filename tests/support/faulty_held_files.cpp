#include "support/faulty_held_files.h"

#include <optional>

#include "cleanup/guards.h"

namespace kelvane::testing {
namespace {

constexpr const char* noMoreNames = "made-up limit of names";

class FaultyFile final : public HeldFile {
public:
    FaultyFile(FaultPlan& plan, std::unique_ptr<HeldFile> real) : plan_(plan), real_(std::move(real)) {}

    Result<FileDetails> details() const override
    {
        return plan_.run("details", [&] { return real_->details(); });
    }
    Result<std::size_t> readAt(std::uint64_t offset, std::span<std::byte> buffer) override
    {
        return plan_.run("read", [&] { return real_->readAt(offset, buffer); });
    }
    Result<FileMetadata> metadata() const override
    {
        return plan_.run("metadata", [&] { return real_->metadata(); });
    }
    Result<std::uint64_t> sharedBytes() const override
    {
        return plan_.run("shared bytes", [&] { return real_->sharedBytes(); });
    }
    bool isBeingWritten() const override
    {
        return plan_.run("being written", [&] { return real_->isBeingWritten(); });
    }
    Status shareBlocks(HeldFile& source) override
    {
        return plan_.run("share blocks", [&] {
            return plan_.pretendsToShare ? equalTo(realOf(source)) : real_->shareBlocks(realOf(source));
        });
    }
    [[nodiscard]] static HeldFile& realOf(HeldFile& file) { return *static_cast<FaultyFile&>(file).real_; }

private:
    [[nodiscard]] Status equalTo(HeldFile& source)
    {
        const auto same = sameContents(*real_, source, CancelFlag());
        if (!same)
            return same.error();
        return *same ? Status() : Status(Error{ErrorKind::changed, 0, "differs"});
    }

    FaultPlan& plan_;
    std::unique_ptr<HeldFile> real_;
};

class FaultyNewFile final : public NewFile {
public:
    FaultyNewFile(FaultPlan& plan, std::unique_ptr<NewFile> real) : plan_(plan), real_(std::move(real)) {}

    Status write(std::span<const std::byte> bytes) override
    {
        return plan_.run(
            "write new", [&] { return real_->write(bytes); },
            [&] { static_cast<void>(real_->write(bytes.first(bytes.size() / 2))); });
    }
    Status setMetadata(const FileMetadata& metadata) override
    {
        return plan_.run("set metadata", [&] { return real_->setMetadata(metadata); });
    }
    Status flush() override
    {
        return plan_.run("flush new", [&] { return plan_.reallyFlushes ? real_->flush() : Status(); });
    }
    Result<FileDetails> details() const override
    {
        return plan_.run("details of new", [&] { return real_->details(); });
    }

private:
    FaultPlan& plan_;
    std::unique_ptr<NewFile> real_;
};

template <class Wrapper, class Port>
Result<std::unique_ptr<Port>> wrapped(FaultPlan& plan, Result<std::unique_ptr<Port>> real)
{
    if (!real)
        return real;
    return std::unique_ptr<Port>(std::make_unique<Wrapper>(plan, std::move(*real)));
}

class FaultyFolder final : public HeldFolder {
public:
    FaultyFolder(FaultPlan& plan, std::unique_ptr<HeldFolder> real) : plan_(plan), real_(std::move(real)) {}

    const std::filesystem::path& path() const override { return real_->path(); }
    Result<FileDetails> look(NativeView name) const override
    {
        return plan_.run("look", [&] { return real_->look(name); });
    }
    Result<std::unique_ptr<HeldFile>> open(NativeView name) override
    {
        return plan_.run("open", [&] { return wrapped<FaultyFile>(plan_, real_->open(name)); });
    }
    Result<std::unique_ptr<NewFile>> create(NativeView name) override
    {
        return plan_.run("create", [&] { return wrapped<FaultyNewFile>(plan_, real_->create(name)); });
    }
    Status hardLink(HeldFile& file, NativeView name) override
    {
        return plan_.run("hard link", [&]() -> Status {
            HeldFile& source = FaultyFile::realOf(file);
            const auto now = source.details();
            if (now && plan_.mostNames > 0 && now->links >= plan_.mostNames)
                return Error{ErrorKind::io, 0, noMoreNames};
            if (plan_.namesLeft == 0)
                return Error{ErrorKind::io, 0, noMoreNames};
            Status made = real_->hardLink(source, name);
            if (made && plan_.namesLeft > 0)
                --plan_.namesLeft;
            return made;
        });
    }
    Status symbolicLink(const std::filesystem::path& target, NativeView name) override
    {
        return plan_.run("symbolic link", [&] { return real_->symbolicLink(target, name); });
    }
    Result<std::filesystem::path> readLink(NativeView name) const override
    {
        return plan_.run("read link", [&] { return real_->readLink(name); });
    }
    Status exchange(NativeView a, NativeView b) override
    {
        return plan_.run("exchange", [&] {
            return plan_.canExchange ? real_->exchange(a, b) : Status(Error{ErrorKind::notSupported, 0, ""});
        });
    }
    Status replace(NativeView from, NativeView to) override
    {
        return plan_.run("replace", [&] { return real_->replace(from, to); });
    }
    Status rename(NativeView from, NativeView to) override
    {
        return plan_.run("rename", [&] { return real_->rename(from, to); });
    }
    Status remove(NativeView name) override
    {
        return plan_.run("remove", [&] { return real_->remove(name); });
    }
    Status flush() override
    {
        return plan_.run("flush names", [&] { return plan_.reallyFlushes ? real_->flush() : Status(); });
    }
    Status flushVolume() override
    {
        return plan_.run("flush volume", [&] { return plan_.reallyFlushes ? real_->flushVolume() : Status(); });
    }

private:
    FaultPlan& plan_;
    std::unique_ptr<HeldFolder> real_;
};

// Hands on what one item of a batch is told, under its number in the batch; what became of it only at the end.
class FaultySink final : public RemovalSink {
public:
    FaultySink(RemovalSink& sink, std::size_t item, FaultPlan& plan) : sink_(sink), item_(item), plan_(plan) {}

    bool before(std::size_t) override
    {
        if (!allowed_)
            allowed_ = sink_.before(item_);
        return *allowed_;
    }
    Status placing(std::size_t, const std::filesystem::path& trashed) override
    {
        const Status told = sink_.placing(item_, trashed);
        return told ? plan_.run("move to trash", [] { return Status(); }) : told;
    }
    void after(std::size_t, const RemovalOutcome& outcome) override { outcome_ = outcome; }

    void tell(const Status& turn)
    {
        constexpr auto failureCode = static_cast<std::int32_t>(0x80070005);
        if (!turn && before(item_))
            sink_.after(item_, {failureCode, turn.error(), std::nullopt});
        else if (turn && outcome_)
            sink_.after(item_, *outcome_);
    }

private:
    RemovalSink& sink_;
    std::size_t item_;
    FaultPlan& plan_;
    std::optional<bool> allowed_;
    std::optional<RemovalOutcome> outcome_;
};

}  // namespace

Result<std::unique_ptr<HeldFolder>> FaultyHeldFiles::openFolder(const std::filesystem::path& folder)
{
    return plan_.run("open folder", [&] { return wrapped<FaultyFolder>(plan_, real_.openFolder(folder)); });
}

bool FaultyHeldFiles::isTooManyLinks(const Error& error) const
{
    return error.detail == noMoreNames || real_.isTooManyLinks(error);
}

BatchOutcome FaultyOperations::remove(std::span<const RemovalItem> items, RemovalSink& sink, const CancelFlag& cancel)
{
    BatchOutcome whole;
    for (std::size_t item = 0; item < items.size() && !whole.aborted; ++item) {
        FaultySink hears(sink, item, plan_);
        hears.tell(plan_.run("remove item", [&] {
            const BatchOutcome one = real_.remove(items.subspan(item, 1), hears, cancel);
            whole.ok = whole.ok && one.ok;
            whole.aborted = one.aborted;
            return Status();
        }));
    }
    return whole;
}

Status FaultyOperations::canTrash(const std::filesystem::path& path)
{
    return plan_.run("can trash", [&] { return real_.canTrash(path); });
}

bool FaultyOperations::isInTrash(const std::filesystem::path& path)
{
    return plan_.run("is in trash", [&] { return real_.isInTrash(path); });
}

Status FaultyOperations::restore(const std::filesystem::path& trashed, const std::filesystem::path& place)
{
    return plan_.run("restore", [&] { return real_.restore(trashed, place); });
}

Status FaultyOperations::forget(const std::filesystem::path& trashed)
{
    return plan_.run("forget", [&] { return real_.forget(trashed); });
}

}  // namespace kelvane::testing
