#include "text/format_epub.h"

#include <algorithm>
#include <array>
#include <set>

#include "text/html_text.h"
#include "text/package_reading.h"
#include "text/property_rules.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

constexpr std::string_view containerName = "META-INF/container.xml";
constexpr std::string_view encryptionName = "META-INF/encryption.xml";

// The metadata of the package document: Dublin Core, and what EPUB 3 adds as meta elements with a "property".
constexpr std::array epubRules = {
    PropertyRule{"title", "System.Title"},
    PropertyRule{"creator", "System.Author", ValueShape::texts},
    PropertyRule{"contributor", "System.Document.Contributor", ValueShape::texts},
    PropertyRule{"subject", "System.Keywords", ValueShape::keywords},
    PropertyRule{"description", "System.Comment"},
    PropertyRule{"publisher", "System.Media.Publisher"},
    PropertyRule{"rights", "System.Copyright"},
    PropertyRule{"language", "System.Language"},
    PropertyRule{"date", "System.Document.DateCreated", ValueShape::date},
    PropertyRule{"dcterms:modified", "System.Document.DateSaved", ValueShape::date},
};

// Finds the package document.
class ContainerHandler final : public MarkupHandler {
public:
    std::string path;

private:
    void begins(std::string_view name, XmlAttributes attributes) override
    {
        if (name == "rootfile" && path.empty())
            path = attributeOf(attributes, "full-path");
    }
    void ends(std::string_view) override {}
    void text(std::string_view) override {}
};

// "%20" and the like are undone, and what follows a "#" goes.
std::string partOfLink(std::string_view folder, std::string_view link)
{
    const auto digit = [](char c) { return std::string_view("0123456789abcdef").find(c | 0x20); };
    std::string path;
    link = link.substr(0, link.find('#'));
    for (std::size_t i = 0; i < link.size(); ++i) {
        const bool escaped =
            link[i] == '%' && i + 2 < link.size() && digit(link[i + 1]) < 16 && digit(link[i + 2]) < 16;
        path += escaped ? static_cast<char>(digit(link[i + 1]) * 16 + digit(link[i + 2])) : link[i];
        i += escaped ? 2 : 0;
    }
    return resolvePart(folder, path);
}

class PackageHandler final : public PropertyHandler {
public:
    explicit PackageHandler(std::string_view folder) : PropertyHandler(epubRules), folder_(folder) {}

    // The parts in the order of the spine. A part that stands in it twice is read once.
    [[nodiscard]] std::vector<std::string> chapters() const
    {
        std::vector<std::string> names;
        std::set<std::string_view> seen;
        for (const std::string& reference : spine_)
            if (const auto item = items_.find(reference); item != items_.end() && seen.insert(item->first).second)
                names.push_back(item->second);
        return names;
    }

private:
    void begins(std::string_view name, XmlAttributes attributes) override
    {
        PropertyHandler::begins(name, attributes);
        meta_ = name == "meta" ? attributeOf(attributes, "property") : std::string_view();
        if (name == "item")
            items_.emplace(attributeOf(attributes, "id"), partOfLink(folder_, attributeOf(attributes, "href")));
        else if (name == "itemref")
            spine_.emplace_back(attributeOf(attributes, "idref"));
    }

    void ends(std::string_view name) override
    {
        PropertyHandler::ends(name == "meta" ? std::string_view(meta_) : name);
    }

    std::string_view folder_;
    std::string meta_;
    std::map<std::string, std::string, std::less<>> items_;
    std::vector<std::string> spine_;
};

bool isEpub(std::span<const std::byte> head)
{
    const PackageHead package = packageHead(head);
    return package.mimetype.starts_with("application/epub+zip") ||
           std::find(package.names.begin(), package.names.end(), containerName) != package.names.end();
}

bool isPackageDocument(std::string_view name)
{
    return name.ends_with(".opf");
}

bool isMeta(std::string_view name)
{
    return name == containerName || name == encryptionName || isPackageDocument(name);
}

// The one that the container names, or the first one.
PackageParts::const_iterator packageDocument(const PackageParts& parts, const DocumentServices& services)
{
    ContainerHandler container;
    if (const auto part = parts.find(containerName); part != parts.end())
        (void)parsePart(part->second, services, container);
    if (const auto named = parts.find(container.path); named != parts.end())
        return named;
    return std::find_if(parts.begin(), parts.end(), [](const auto& part) { return isPackageDocument(part.first); });
}

// A chapter under rights management is noise.
bool readChapter(const PartContent& chapter, const DocumentServices& services, DocumentSink& sink)
{
    const std::string_view bytes = asCharacters(chapter.bytes);
    if (!looksLikeText(std::span(chapter.bytes).first(std::min<std::size_t>(bytes.size(), 4096))))
        return bytes.empty();
    const DecodedText decoded = decodeText(chapter.bytes, services.decoding, declaredMarkupCharset(bytes));
    putHtmlText(decoded.text, sink, false);
    sink.lineBreak();
    return true;
}

ReadOutcome readChapters(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink,
                         const std::vector<std::string>& chapters, bool encrypted)
{
    const std::set<std::string_view> names(chapters.begin(), chapters.end());
    PackageParts parts;
    ReadOutcome reading = readParts(
        file, services, sink, [&names](std::string_view name) { return names.count(name) != 0; }, parts);
    for (const std::string& name : chapters) {
        const auto part = parts.find(name);
        if (part == parts.end() || readChapter(part->second, services, sink) ||
            reading.outcome != TextOutcome::extracted)
            continue;
        reading = {encrypted ? TextOutcome::encrypted : TextOutcome::damaged, "a chapter is no text", {}};
    }
    if (parts.empty() && reading.outcome == TextOutcome::extracted)
        return {TextOutcome::damaged, "no chapters", {}};
    return reading;
}

ReadOutcome readEpub(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    PackageParts parts;
    const ReadOutcome reading = readParts(file, services, sink, isMeta, parts);
    const auto document = packageDocument(parts, services);
    if (document == parts.end())
        return reading.outcome != TextOutcome::extracted ? reading
                                                         : ReadOutcome{TextOutcome::damaged, "no package document", {}};
    PackageHandler handler(folderOfPart(document->first));
    const bool whole = parsePart(document->second, services, handler);
    handler.give(sink);
    if (!whole)
        return {TextOutcome::damaged, "the package document is no XML", {}};
    return readChapters(file, services, sink, handler.chapters(), parts.count(encryptionName) != 0);
}

}  // namespace

const DocumentFormat epubFormat = {
    .name = "EPUB",
    .masks = "epub",
    .recognises = isEpub,
    .read = readEpub,
};

}  // namespace kelvane
