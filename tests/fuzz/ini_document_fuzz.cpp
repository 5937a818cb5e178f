#include <map>
#include <span>

#include "platform/ini_document.h"
#include "platform/ini_values.h"
#include "platform/text_folding.h"
#include "require.h"

namespace kelvane {
namespace {

using Name = std::pair<std::u16string, std::u16string>;
using Values = std::map<Name, std::u16string>;

Values valuesOf(const IniDocument& document)
{
    Values values;
    std::vector<std::u16string> sections = document.sectionNames();
    sections.insert(sections.begin(), u"");
    for (const std::u16string& section : sections) {
        for (const std::u16string& key : document.keyNames(section)) {
            const auto text = document.text(section, key);
            require(text.has_value());
            values[{section, key}] = *text;
            (void)numberFromIniText(*text);
            if (const auto block = blockFromIniText(*text); block && text->size() > 2)
                require(blockFromIniText(iniBlockText(*block)) == block);
        }
    }
    return values;
}

IniDocument again(const IniDocument& document, const TextFolding& folding)
{
    auto read = IniDocument::parse(document.serialise(), folding);
    require(read.ok());
    return *read;
}

// A text of the input's own comes back under a name of its own, and nothing else changes.
void change(IniDocument document, std::u16string_view name, std::u16string_view text, const TextFolding& folding)
{
    Values before = valuesOf(document);
    const std::u16string section = iniSectionName(name.substr(name.size() / 2));
    const std::u16string key = iniValueName(name);
    const bool known = document.text(section, key).has_value();
    document.setText(section, key, text);
    IniDocument changed = again(document, folding);
    require(changed.text(section, key) == text);
    const Values after = valuesOf(changed);
    require(after.size() == before.size() + (known ? 0 : 1));
    std::size_t different = 0;
    for (const auto& [where, value] : before)
        different += after.count(where) == 0 || after.at(where) != value;
    require(different <= (known ? 1u : 0u));
    require(changed.remove(section, key));
    require(!again(changed, folding).text(section, key));
}

// The first two bytes say which part of the rest becomes a name and a text.
void tryFile(std::span<const std::byte> input)
{
    static const auto folding = makeTextFolding();
    const auto bytes = input.subspan(2);
    const auto document = IniDocument::parse(bytes, *folding);
    if (!document)
        return;
    require(valuesOf(again(*document, *folding)) == valuesOf(*document));
    const std::u16string text = decodeIni(bytes)->text;
    const std::size_t at = std::to_integer<std::size_t>(input[0]) * text.size() / 256;
    const auto length = std::to_integer<std::size_t>(input[1]);
    change(*document, text.substr(at, length % 16), text.substr(at / 2, length), *folding);
}

}  // namespace
}  // namespace kelvane

extern "C" int LLVMFuzzerTestOneInput(const unsigned char* data, std::size_t size)
{
    if (size >= 2)
        kelvane::tryFile(std::as_bytes(std::span(data, size)));
    return 0;
}
