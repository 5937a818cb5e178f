#include "engine/document_description.h"

#include <algorithm>
#include <span>
#include <utility>
#include <vector>

#include "base/filled_text.h"
#include "base/words.h"
#include "platform/native_text.h"
#include "platform/run_cache_key.h"

namespace kelvane {
namespace {

TextId wordsFor(TextOutcome outcome)
{
    switch (outcome) {
    case TextOutcome::extracted:
        return TextId::textTooLittle;
    case TextOutcome::unknownFormat:
        return TextId::textUnknownFormat;
    case TextOutcome::excluded:
        return TextId::textExcluded;
    case TextOutcome::tooLarge:
        return TextId::textTooLarge;
    case TextOutcome::encrypted:
        return TextId::textEncrypted;
    case TextOutcome::damaged:
        return TextId::textDamaged;
    case TextOutcome::toolMissing:
        return TextId::textToolMissing;
    case TextOutcome::timedOut:
        return TextId::textTimedOut;
    case TextOutcome::tooMuchMemory:
        return TextId::textTooMuchMemory;
    case TextOutcome::crashed:
        return TextId::textReaderCrashed;
    case TextOutcome::unreadable:
    case TextOutcome::cancelled:
        break;
    }
    return TextId::textUnreadable;
}

// A value in the cache begins with a byte: 0 for a descriptor behind it, else 1 + the outcome of having none, with what
// is known beyond it behind.
constexpr std::byte descriptorMark{0};

std::byte outcomeMark(TextOutcome outcome)
{
    return static_cast<std::byte>(static_cast<unsigned>(outcome) + 1);
}

std::vector<std::byte> packed(const DocumentDescription& description)
{
    const SimDocDescriptor* const descriptor = description.descriptor.get();
    std::vector<std::byte> bytes = descriptor != nullptr ? descriptor->packed() : detailToKeep(description.detail);
    bytes.insert(bytes.begin(), descriptor != nullptr ? descriptorMark : outcomeMark(description.outcome));
    return bytes;
}

// Nothing for bytes that this program did not write.
std::optional<DocumentDescription> unpacked(std::span<const std::byte> bytes)
{
    if (bytes.empty())
        return std::nullopt;
    DocumentDescription description;
    if (bytes.front() == descriptorMark) {
        description.descriptor = SimDocDescriptor::unpacked(bytes.subspan(1));
        return description.descriptor ? std::optional(std::move(description)) : std::nullopt;
    }
    description.outcome = static_cast<TextOutcome>(std::to_integer<unsigned>(bytes.front()) - 1);
    description.detail = keptDetail(bytes.subspan(1));
    const bool sound = description.outcome < TextOutcome::cancelled;
    return sound && isLasting(description.outcome) ? std::optional(std::move(description)) : std::nullopt;
}

// Lengths stand in front of the words, so that no two settings read the same.
void append(std::string& all, const std::vector<std::string>& words)
{
    all += std::to_string(words.size()) + ':';
    for (const std::string& word : words)
        all += std::to_string(word.size()) + ':' + word;
}

// A plug-in that was replaced reads otherwise.
std::string stateOf(ShellNamespace& shell, const std::filesystem::path& library)
{
    const auto details = shell.files().details(library, Links::followed);
    return details ? std::to_string(details->size.bytes) + '/' + std::to_string(details->modified.ticks) : "";
}

std::string settingsText(const ExtractionOptions& options, ShellNamespace& shell)
{
    std::string all = std::to_string(documentDescriptorVersion) + ',' + std::to_string(options.textSample) + ',' +
                      std::to_string(options.largestStream) + ',';
    append(all, options.excluded);
    append(all, options.whiteList);
    for (const ContentPluginEntry& plugin : options.plugins)
        append(all, {bytesFromNative(plugin.path.native()), plugin.detect, stateOf(shell, plugin.path)});
    return all;
}

}  // namespace

NoDescriptorCause DocumentDescription::cause() const
{
    return {filledText(wordsFor(outcome)), detail, outcome == TextOutcome::unreadable, !isLasting(outcome)};
}

bool isLasting(TextOutcome outcome)
{
    switch (outcome) {
    case TextOutcome::extracted:
    case TextOutcome::unknownFormat:
    case TextOutcome::excluded:
    case TextOutcome::tooLarge:
    case TextOutcome::encrypted:
    case TextOutcome::damaged:
        return true;
    default:
        return false;
    }
}

DocumentDescriber::DocumentDescriber(ShellNamespace& shell, TextExtraction& extraction, RunCache* cache)
    : shell_(shell), extraction_(extraction), cache_(cache), settings_(settingsText(extraction.options(), shell))
{
}

DocumentDescription DocumentDescriber::describe(const ShellItem& item, bool sizeOnDisk, const CancelFlag& cancel) const
{
    const std::optional<RunCacheKey> key = keyOf(item, sizeOnDisk);
    if (key) {
        if (auto description = known(*key))
            return *std::move(description);
    }
    DocumentDescription made = extract(item, sizeOnDisk, cancel);
    // A file that changed while it was read is kept under neither of its states.
    if (key && isLasting(made.outcome) && key->size == item.info().size && keyOf(item, sizeOnDisk) == key)
        keep(*key, made);
    return made;
}

std::optional<RunCacheKey> DocumentDescriber::keyOf(const ShellItem& item, bool sizeOnDisk) const
{
    if (cache_ == nullptr)
        return std::nullopt;
    return runCacheKey(shell_, item, CachedKind::documentDescriptor, settings_ + (sizeOnDisk ? 'd' : 't'));
}

std::optional<DocumentDescription> DocumentDescriber::known(const RunCacheKey& key) const
{
    const auto bytes = cache_->find(key);
    return bytes ? unpacked(*bytes) : std::nullopt;
}

void DocumentDescriber::keep(const RunCacheKey& key, const DocumentDescription& description) const
{
    cache_->put(key, packed(description));
}

DocumentDescription DocumentDescriber::extract(const ShellItem& item, bool sizeOnDisk, const CancelFlag& cancel) const
{
    ExtractedDocument document = extraction_.extract(item, cancel);
    DocumentDescription description;
    description.outcome = document.outcome;
    description.detail = std::move(document.detail);
    if (document.outcome == TextOutcome::extracted) {
        const bool byFile = sizeOnDisk || document.plain;
        const std::uint64_t size = byFile ? item.info().size.bytes : document.weight;
        description.descriptor = SimDocDescriptor::make(std::move(document.text), size);
    }
    return description;
}

}  // namespace kelvane
