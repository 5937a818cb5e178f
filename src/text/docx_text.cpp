#include "text/docx_text.h"

#include <algorithm>
#include <array>

namespace kelvane {
namespace {

// Settings of paragraphs and sections (with tab stops that are no tabs), field codes, what was deleted or moved away
// while changes were tracked, the stand-ins for readers that lack a feature, and the readings printed above characters.
constexpr auto docxLeftOut = std::to_array<std::string_view>(
    {"pPr", "sectPr", "tblPr", "instrText", "delInstrText", "del", "delText", "moveFrom", "Fallback", "rt"});

// The text as a reader of the document finds it: with what others inserted, without what they deleted, without hidden
// text, and without comments, headers and footers, which are other parts.
class DocxHandler final : public TextHandler {
public:
    using TextHandler::TextHandler;

private:
    bool leavesOut(std::string_view name, XmlAttributes attributes) override
    {
        const std::string_view type = attributeOf(attributes, "type");
        const bool note = name == "footnote" || name == "endnote";
        return isOneOf(docxLeftOut, name) || (note && type.ends_with("eparator"));
    }

    void begins(std::string_view name, XmlAttributes attributes) override
    {
        if (name == "r")
            hidden_ = false;
        else if (name == "vanish")
            hidden_ = !isFalse(attributeOf(attributes, "val"));
        else if (name == "t")
            inText_ = true;
        else if (name == "tc")
            ++cells_;
        else if (name == "tab" || name == "ptab")
            sink_.gap();
        else if (name == "br" || name == "cr")
            sink_.lineBreak();
        else if (name == "noBreakHyphen" && !hidden_)
            sink_.text(u"\u2011");
    }

    void ends(std::string_view name) override
    {
        if (name == "t") {
            inText_ = false;
        } else if (name == "tc") {
            cells_ -= cells_ > 0;
            sink_.gap();
        } else if (name == "p" && cells_ > 0) {
            sink_.gap();  // the row is the line
        } else if (name == "p" || name == "tr") {
            sink_.lineBreak();
        }
    }

    void text(std::string_view characters) override
    {
        if (inText_ && !hidden_)
            sink_.text(characters);
    }

    static bool isFalse(std::string_view value) { return value == "0" || value == "false" || value == "off"; }

    bool inText_ = false, hidden_ = false;
    std::size_t cells_ = 0;  // that are open, one in the other
};

constexpr auto notes = std::to_array<std::string_view>({"word/footnotes.xml", "word/endnotes.xml"});

}  // namespace

bool isDocxMain(std::string_view name)
{
    // Some writers number it.
    constexpr std::string_view begin = "word/document", end = ".xml";
    return name.starts_with(begin) && name.ends_with(end) &&
           name.substr(begin.size(), name.size() - begin.size() - end.size()).find_first_not_of("0123456789") ==
               std::string_view::npos;
}

bool isDocxPart(std::string_view name)
{
    return isDocxMain(name) || isOneOf(notes, name);
}

bool readDocxText(const PackageParts& parts, const DocumentServices& services, DocumentSink& sink)
{
    bool whole = true;
    const auto read = [&](const PartContent& part) {
        DocxHandler handler(sink);
        whole = parsePart(part, services, handler) && whole;
        sink.lineBreak();
    };
    for (const auto& [name, part] : parts)
        if (isDocxMain(name))
            read(part);
    for (const std::string_view name : notes)
        if (const auto part = parts.find(name); part != parts.end())
            read(part->second);
    return whole;
}

}  // namespace kelvane
