#include "text/format_xml.h"

#include <algorithm>

#include "base/utf.h"
#include "text/collapsed_text.h"
#include "text/html_text.h"
#include "text/html_tokens.h"
#include "text/stream_reading.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

// A tag parts words, for nothing tells which elements stand within a line; white space with a line break between two
// tags parts lines, since that is how people lay out their XML.
class MarkupWriter final : public XmlHandler {
public:
    explicit MarkupWriter(DocumentSink& sink) : sink_(sink), collapsed_(sink) {}

    bool elementBegins(std::string_view, std::span<const Attribute>) override { return tag(); }
    bool elementEnds(std::string_view) override { return tag(); }
    bool characters(std::string_view text) override { return put(toUtf16(text)); }

    bool tag()
    {
        heard_ = true;
        return sink_.gap();
    }

    bool put(std::u16string_view text)
    {
        if (std::all_of(text.begin(), text.end(), isMarkupSpace) && text.find(u'\n') != std::u16string_view::npos)
            return sink_.lineBreak();
        collapsed_.put(text);
        return sink_.wantsMore();
    }

    [[nodiscard]] bool heard() const { return heard_; }

private:
    DocumentSink& sink_;
    CollapsedText collapsed_;
    bool heard_ = false;
};

// What no parser takes.
void putBrokenMarkup(std::u16string_view document, MarkupWriter& writer)
{
    HtmlTokens tokens(document);
    bool more = true;
    while (more) {
        const auto token = tokens.next();
        if (!token)
            return;
        if (token->kind != HtmlToken::Kind::text)
            more = writer.tag();
        else
            more = writer.put(token->verbatim ? std::u16string(token->text) : withoutReferences(token->text));
    }
}

// Its charset no longer holds for the text.
std::u16string_view withoutDeclaration(std::u16string_view document)
{
    const std::size_t end = document.find(u"?>");
    return document.starts_with(u"<?xml") && end != std::u16string_view::npos ? document.substr(end + 2) : document;
}

bool recognisesXml(std::span<const std::byte> head)
{
    std::string latin;
    for (const char byte : asCharacters(head.first(std::min<std::size_t>(head.size(), 20)))) {
        if (byte != '\0')
            latin += byte;
    }
    const std::size_t at = latin.find("<?xml ");
    return at != std::string::npos && at <= 3;  // behind a byte-order mark
}

ReadOutcome readXml(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    const auto bytes = readBeginning(file, services.options.largestStream);
    if (!bytes)
        return unreadable(bytes.error());
    if (!bytes->empty() && !looksLikeText(std::span(*bytes).first(std::min<std::size_t>(bytes->size(), 4096))))
        return {TextOutcome::damaged, {}, {}};
    const std::string declared = declaredMarkupCharset(asCharacters(*bytes));
    const DecodedText decoded = decodeText(*bytes, services.decoding, declared);
    const std::u16string_view document = withoutDeclaration(decoded.text);
    MarkupWriter writer(sink);
    const Status parsed = services.xml.parse(asBytes(toUtf8(document)), writer);
    if (!parsed && !writer.heard())
        putBrokenMarkup(document, writer);
    if (bytes->size() < file.size())
        sink.leavesMore();
    return {};
}

}  // namespace

const DocumentFormat xmlFormat = {
    .name = "XML",
    .masks = "xml,svg,dbk,docbook,dita,ditamap,tei,rss,atom,rdf,owl,opml,xmp,xliff,xlf,tmx,ttml,dfxp,plist,fodt,fods,"
             "fodp,gpx,kml,mml,musicxml",
    .textual = true,
    .recognises = recognisesXml,
    .read = readXml};

}  // namespace kelvane
