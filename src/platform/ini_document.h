// An INI file in memory, as the Windows profile functions read and write one (docs/formats/ini.md).
#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "base/result.h"
#include "platform/ini_encoding.h"
#include "platform/text_folding.h"

namespace kelvane {

// Lines that are not changed stay as they are, byte for byte: comments, foreign sections, spelling and order. Names are
// compared without case; of several sections or keys of one name the first one counts. Names that are passed in must be
// such as iniSectionName() and iniValueName() give; the section "" is what stands before the first section line.
// Used by one thread at a time; the folding must outlive the document.
class IniDocument {
public:
    static constexpr std::size_t mostBytes = 16u << 20;
    static constexpr std::size_t mostLines = 1u << 18;

    // A new file.
    explicit IniDocument(const TextFolding& folding) : folding_(&folding), sections_(1) {}

    // `invalid` when the bytes are no text, or above one of the limits; the detail says which as a clause ("it ...").
    [[nodiscard]] static Result<IniDocument> parse(std::span<const std::byte> bytes, const TextFolding& folding);

    [[nodiscard]] std::vector<std::byte> serialise() const;

    [[nodiscard]] bool hasSection(std::u16string_view section) const;
    // In the order of the file, each once.
    [[nodiscard]] std::vector<std::u16string> sectionNames() const;
    [[nodiscard]] std::vector<std::u16string> keyNames(std::u16string_view section) const;

    // Without the blanks and the quotation marks around it. A line without "=" has no value.
    [[nodiscard]] std::optional<std::u16string> text(std::u16string_view section, std::u16string_view key) const;

    // A new key stands at the end of its section, before the blank lines that end it; a new section at the end.
    void setText(std::u16string_view section, std::u16string_view key, std::u16string_view text);

    // Every line of this name, so that a second one does not take its place. False when there was none.
    bool remove(std::u16string_view section, std::u16string_view key);
    bool removeSection(std::u16string_view section);

private:
    struct Line {
        std::u16string text;  // with its line end
        std::u16string key;   // folded; empty when the line has none
    };
    struct Section {
        std::u16string name;
        std::u16string folded;
        std::vector<Line> lines;  // the section line is the first one
    };

    [[nodiscard]] std::u16string folded(std::u16string_view name) const;
    [[nodiscard]] static std::optional<std::size_t> lineAt(const Section& section, std::u16string_view folded);
    [[nodiscard]] Line lineOf(std::u16string_view text) const;
    void addLine(std::u16string_view text);
    [[nodiscard]] std::optional<std::size_t> sectionAt(std::u16string_view section) const;
    [[nodiscard]] Section& made(std::u16string_view section);
    void insert(Section& section, std::u16string_view text);
    void endLastLine();

    const TextFolding* folding_;
    IniEncoding encoding_ = IniEncoding::utf16;
    std::u16string lineEnd_ = u"\r\n";
    std::vector<Section> sections_;  // the first one is what stands before any section line
};

}  // namespace kelvane
