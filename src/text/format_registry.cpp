#include "text/format_registry.h"

#include <algorithm>
#include <array>
#include <vector>

#include "base/file_masks.h"
#include "base/words.h"
#include "text/format_compound.h"
#include "text/format_epub.h"
#include "text/format_fictionbook.h"
#include "text/format_html.h"
#include "text/format_mail.h"
#include "text/format_ooxml.h"
#include "text/format_opendocument.h"
#include "text/format_pdf.h"
#include "text/format_plain_text.h"
#include "text/format_rtf.h"
#include "text/format_subtitles.h"
#include "text/format_xml.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

// Those whose bytes tell more come first: of what several of them recognise, the first one is it.
const auto& formats()
{
    static const std::array all = {
        // packages
        ooxmlFormat,
        openDocumentFormat,
        epubFormat,
        // signatures
        pdfFormat,
        compoundFormat,
        rtfFormat,
        // markup
        fictionBookFormat,
        htmlFormat,
        xmlFormat,
        // other texts with a shape
        mailFormat,
        subtitleFormat,
        // no bytes tell: these two stay last
        plainTextFormat,
        sourceCodeFormat,
    };
    return all;
}

const DocumentFormat& plainText()
{
    return formats()[formats().size() - 2];
}
const DocumentFormat& sourceCode()
{
    return formats().back();
}

// Texts that go by these names without any extension.
constexpr std::array textNames = {
    std::string_view("readme"),    std::string_view("changelog"),  std::string_view("changes"),
    std::string_view("news"),      std::string_view("todo"),       std::string_view("authors"),
    std::string_view("license"),   std::string_view("licence"),    std::string_view("copying"),
    std::string_view("copyright"), std::string_view("install"),    std::string_view("notice"),
    std::string_view("makefile"),  std::string_view("dockerfile"),
};

struct FormatMasks {
    FileMasks masks;
    const DocumentFormat* format;
};

const std::vector<FormatMasks>& masksOfFormats()
{
    static const std::vector<FormatMasks> all = [] {
        std::vector<FormatMasks> rows;
        for (const DocumentFormat& format : formats())
            rows.push_back({FileMasks(format.masks), &format});
        return rows;
    }();
    return all;
}

bool recognises(const DocumentFormat& format, std::span<const std::byte> head)
{
    return format.recognises != nullptr && format.recognises(head);
}

const DocumentFormat* formatByBytes(std::span<const std::byte> head)
{
    const auto found = std::find_if(formats().begin(), formats().end(),
                                    [head](const DocumentFormat& format) { return recognises(format, head); });
    return found != formats().end() ? &*found : nullptr;
}

}  // namespace

std::span<const DocumentFormat> documentFormats()
{
    return formats();
}

const DocumentFormat* formatByName(std::string_view fileName)
{
    for (const FormatMasks& row : masksOfFormats()) {
        if (row.masks.admits(fileName))
            return row.format;
    }
    const bool text = std::find(textNames.begin(), textNames.end(), asciiLower(fileName)) != textNames.end();
    return text ? &plainText() : nullptr;
}

const DocumentFormat* formatOf(std::string_view fileName, std::span<const std::byte> head)
{
    const DocumentFormat* named = formatByName(fileName);
    if (named != nullptr && recognises(*named, head))
        return named;
    const DocumentFormat* recognised = formatByBytes(head);
    if (recognised != nullptr && !(named == &sourceCode() && recognised->textual))
        return recognised;
    if (named != nullptr && named->textual)
        return named;
    return looksLikeText(head) ? &plainText() : named;
}

}  // namespace kelvane
