#include "ui/preview/preview_reader.h"

#include <algorithm>

#include "app/error_text.h"
#include "base/desktop_texts/preview.h"
#include "base/filled_text.h"
#include "base/utf.h"
#include "engine/document_description.h"
#include "engine/media_causes.h"
#include "text/file_kinds.h"
#include "text/text_charset.h"
#include "ui/preview/listed_entries.h"
#include "ui/preview/short_lines.h"

namespace kelvane {
namespace {

namespace say = desktop_text;
using Kind = PreviewContent::Kind;

std::u16string note(TextId id, std::initializer_list<std::string_view> parts = {})
{
    return toUtf16(filledText(id, parts));
}

PreviewContent failed(const Error& error)
{
    PreviewContent content;
    content.state = error.kind == ErrorKind::notFound ? FileState::gone : FileState::unreadable;
    content.note =
        error.kind == ErrorKind::notFound ? note(say::previewGone) : note(say::previewUnreadable, {errorText(error)});
    return content;
}

// Times of entries of archives are whatever the archive says, and stay so.
bool hasChanged(const ShellItem& item, const FileInfo& now)
{
    const FileInfo& seen = item.info();
    if (!item.inFileSystem() || seen.kind != FileKind::regular)
        return false;
    const bool touched = seen.modified.ticks != 0 && seen.modified != now.modified;
    return touched || seen.size.bytes != now.size.bytes;
}

// Markup says more without its marks.
bool isMarkup(std::span<const std::byte> head)
{
    const std::string_view text = asCharacters(head);
    const std::size_t first = text.find_first_not_of(" \t\r\n\xEF\xBB\xBF");
    return first != std::string_view::npos && (text[first] == '<' || text.substr(first).starts_with("{\\rtf"));
}

void setText(PreviewContent& content, std::u16string_view text)
{
    ShortLines lines = shortLines(text, preview_limit::lineCharacters, preview_limit::lines);
    content.kind = Kind::text;
    content.text = std::move(lines.text);
    content.broken = lines.broken;
    content.cut = content.cut || lines.cut;
}

PreviewContent plainText(std::span<const std::byte> bytes, bool cut, const PreviewTools& tools)
{
    PreviewContent content;
    auto decoded = decodeText(bytes, tools.platform.decoding());
    content.charset = std::move(decoded.charset);
    content.cut = cut;
    setText(content, decoded.text);
    return content;
}

PreviewContent bytesOf(std::vector<std::byte> head, std::u16string why)
{
    PreviewContent content;
    content.kind = head.empty() ? Kind::nothing : Kind::bytes;
    content.note = head.empty() ? note(say::previewEmpty) : std::move(why);
    head.resize(std::min(head.size(), preview_limit::chunk));
    content.head = std::move(head);
    return content;
}

PreviewContent extractedText(const ExtractedDocument& document)
{
    PreviewContent content;
    const std::u16string_view text = document.text;
    content.cut = document.cut || text.size() > preview_limit::textCharacters;
    setText(content, text.substr(0, preview_limit::textCharacters));
    return content;
}

PreviewContent textOrBytes(const ShellItem& item, PreviewTools& tools)
{
    auto head = readBytes(item, 0, preview_limit::textBytes, tools);
    if (!head)
        return failed(head.error());
    const bool cut = item.info().size.bytes > head->size();
    const bool text = looksLikeText(*head);
    if (text && !isMarkup(*head))
        return plainText(*head, cut, tools);
    const bool hopeless = neverHoldsText(extensionOf(lastName(item))) || tools.access.extraction->hopeless(item);
    if (hopeless)
        return text ? plainText(*head, cut, tools) : bytesOf(*std::move(head), {});
    const ExtractedDocument document = tools.access.extraction->extract(item, tools.cancel);
    if (document.outcome == TextOutcome::extracted && !document.text.empty())
        return extractedText(document);
    if (text)
        return plainText(*head, cut, tools);
    const DocumentDescription why{nullptr, document.outcome, document.detail};
    return bytesOf(*std::move(head), document.outcome == TextOutcome::unknownFormat
                                         ? std::u16string()
                                         : note(say::previewNoText, {causeText(why.cause())}));
}

PreviewContent pictureOf(const ShellItem& item, MediaKind kind, PreviewTools& tools)
{
    const PreviewDescription made = tools.access.describer->signature(item, kind, tools.cancel);
    PreviewContent content;
    content.picture = made.preview ? made.preview : tools.access.describer->preview(item, kind, tools.cancel);
    if (content.picture) {
        content.kind = Kind::picture;
        return content;
    }
    content = textOrBytes(item, tools);
    if (content.kind == Kind::bytes)
        content.note = note(say::previewNoPicture, {causeText(mediaCause(made.fault))});
    return content;
}

PreviewContent contentOf(const Ref<const ShellItem>& item, PreviewTools& tools)
{
    if (item->isFolder())
        return listedEntries(item, tools);
    if (item->isOffline() || item->isCloudPlaceholder()) {
        PreviewContent content;
        content.note = note(say::previewOffline);
        return content;
    }
    if (const auto archive = archiveIn(*item, tools))
        return listedEntries(archive, tools);
    switch (const MediaKind kind = mediaKindOf(lastName(*item))) {
    case MediaKind::picture:
    case MediaKind::film:
        return pictureOf(*item, kind, tools);
    case MediaKind::sound: {
        PreviewContent content;
        content.note = note(say::previewSound);
        return content;
    }
    case MediaKind::none:
        break;
    }
    return textOrBytes(*item, tools);
}

}  // namespace

Result<std::vector<std::byte>> readBytes(const ShellItem& item, std::uint64_t position, std::size_t most,
                                         PreviewTools& tools)
{
    if (!item.inFileSystem() && position >= preview_limit::packedBytes)
        return std::vector<std::byte>();
    auto opened = tools.platform.shell().open(item, ReadPattern::scattered);
    if (!opened)
        return opened.error();
    if (position > 0) {
        if (const auto moved = (*opened)->skip(position); !moved)
            return moved.error();
    }
    std::vector<std::byte> bytes(most);
    const auto count = (*opened)->read(bytes);
    if (!count)
        return count.error();
    bytes.resize(*count);
    return bytes;
}

PreviewContent readPreview(const Ref<const ShellItem>& item, PreviewTools& tools)
{
    const auto now = tools.platform.shell().details(*item);
    if (!now)
        return failed(now.error());
    PreviewContent content = contentOf(item, tools);
    content.bytes = now->size.bytes;
    if (content.state == FileState::asSeen && hasChanged(*item, *now))
        content.state = FileState::changed;
    return content;
}

}  // namespace kelvane
