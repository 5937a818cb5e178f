#include "text/xml_bytes.h"

#include "base/utf.h"
#include "base/words.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

// Of a document whose declaration is readable as ASCII; empty where none is declared.
std::string declaredCharset(std::string_view document)
{
    constexpr std::string_view mark = "\xef\xbb\xbf";
    if (document.starts_with(mark))
        document.remove_prefix(mark.size());
    if (!document.starts_with("<?xml"))
        return {};
    const std::string_view declaration = document.substr(0, document.find("?>"));
    const std::size_t key = declaration.find("encoding");
    const std::size_t quote = key == std::string_view::npos ? key : declaration.find_first_of("'\"", key);
    if (quote == std::string_view::npos)
        return {};
    const std::string_view rest = declaration.substr(quote + 1);
    return asciiLower(rest.substr(0, rest.find(declaration[quote])));
}

std::u16string_view withoutDeclaration(std::u16string_view document)
{
    const std::size_t end = document.find(u"?>");
    return document.starts_with(u"<?xml") && end != std::u16string_view::npos ? document.substr(end + 2) : document;
}

}  // namespace

std::vector<std::byte> xmlInUtf8(std::span<const std::byte> document, const TextDecoding& decoding)
{
    const std::string declared = declaredCharset(asCharacters(document));
    if (declared.empty() || declared.starts_with("utf-"))
        return {document.begin(), document.end()};
    const DecodedText decoded = decodeText(document, decoding, declared);
    const std::string utf8 = toUtf8(withoutDeclaration(decoded.text));
    const auto bytes = asBytes(utf8);
    return {bytes.begin(), bytes.end()};
}

}  // namespace kelvane
