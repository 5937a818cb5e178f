#include "text/pptx_text.h"

#include <algorithm>

namespace kelvane {
namespace {

constexpr std::string_view slideFolder = "ppt/slides/slide";
constexpr std::string_view noteFolder = "ppt/notesSlides/notesSlide";

// The texts of a slide's shapes, hidden slides included: whoever opens the presentation sees them. Numbers and dates
// of slides, headers and footers stand on each of them and say nothing.
class SlideHandler final : public TextHandler {
public:
    using TextHandler::TextHandler;

private:
    bool leavesOut(std::string_view name, XmlAttributes attributes) override
    {
        const std::string_view type = attributeOf(attributes, "type");
        return name == "Fallback" || name == "pPr" || (name == "fld" && isDecoration(type)) ||
               (name == "txBody" && decoration_);
    }

    static bool isDecoration(std::string_view type)
    {
        return type == "sldNum" || type == "slidenum" || type == "ftr" || type == "hdr" || type == "dt" ||
               type.starts_with("datetime");
    }

    void begins(std::string_view name, XmlAttributes attributes) override
    {
        if (name == "sp")
            decoration_ = false;
        else if (name == "ph")
            decoration_ = isDecoration(attributeOf(attributes, "type"));
        else if (name == "t")
            inText_ = true;
        else if (name == "tc")
            ++cells_;
        else if (name == "tab")
            sink_.gap();
        else if (name == "br")
            sink_.lineBreak();
    }

    void ends(std::string_view name) override
    {
        if (name == "t") {
            inText_ = false;
        } else if (name == "tc") {
            cells_ -= cells_ > 0;
            sink_.gap();
        } else if (name == "p" && cells_ > 0) {
            sink_.gap();
        } else if (name == "p" || name == "tr") {
            sink_.lineBreak();
        }
    }

    void text(std::string_view characters) override
    {
        if (inText_)
            sink_.text(characters);
    }

    bool inText_ = false, decoration_ = false;
    std::size_t cells_ = 0;
};

std::vector<PackageParts::const_iterator> numbered(const PackageParts& parts, std::string_view beginning)
{
    std::vector<PackageParts::const_iterator> found;
    for (auto part = parts.begin(); part != parts.end(); ++part)
        if (part->first.starts_with(beginning))
            found.push_back(part);
    std::stable_sort(found.begin(), found.end(),
                     [](auto a, auto b) { return numberIn(a->first) < numberIn(b->first); });
    return found;
}

}  // namespace

bool isPptxMain(std::string_view name)
{
    return name == "ppt/presentation.xml";
}

bool isPptxPart(std::string_view name)
{
    return isPptxMain(name) ||
           ((name.starts_with(slideFolder) || name.starts_with(noteFolder)) && name.ends_with(".xml"));
}

bool readPptxText(const PackageParts& parts, const DocumentServices& services, DocumentSink& sink)
{
    bool whole = true;
    for (const std::string_view beginning : {slideFolder, noteFolder}) {
        for (const auto part : numbered(parts, beginning)) {
            SlideHandler handler(sink);
            whole = parsePart(part->second, services, handler) && whole;
            sink.lineBreak();
        }
    }
    return whole;
}

}  // namespace kelvane
