// Documents in memory, and what their readers work with.
#pragma once

#include <algorithm>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

#include "base/utf.h"
#include "platform/missing_ports.h"
#include "text/document_extractor.h"

namespace kelvane::testing {

class MemoryDocument : public RandomAccessFile {
public:
    explicit MemoryDocument(std::string content) : content_(std::move(content)) {}

    std::uint64_t size() const override { return content_.size(); }
    Result<std::size_t> readAt(std::uint64_t position, std::span<std::byte> buffer) override
    {
        const std::size_t from = static_cast<std::size_t>(std::min<std::uint64_t>(position, content_.size()));
        const std::size_t count = std::min(buffer.size(), content_.size() - from);
        const auto bytes = std::as_bytes(std::span(content_)).subspan(from, count);
        std::copy(bytes.begin(), bytes.end(), buffer.begin());
        bytesRead += count;
        return count;
    }

    std::uint64_t bytesRead = 0;

private:
    std::string content_;
};

// Charsets are those of the system; what is not set otherwise is missing.
struct DocumentWorld {
    ExtractionOptions options;
    std::unique_ptr<TextDecoding> decoding = makeTextDecoding();
    std::unique_ptr<XmlParsing> xml = makeMissingXmlParsing();
    std::unique_ptr<PackagedFiles> packages = makeMissingPackagedFiles();
    std::unique_ptr<FilterPrograms> filters = makeMissingFilterPrograms();

    ExtractedDocument extract(std::string_view fileName, std::string content)
    {
        MemoryDocument file(std::move(content));
        return extractDocument(file, fileName, {*decoding, *xml, *packages, *filters, options});
    }
};

// The value of a property as text; several are parted by '|', numbers are decimal. Empty where there is none.
inline std::string valueText(const ExtractedDocument& document, std::string_view name)
{
    for (const DocumentProperty& property : document.properties) {
        if (property.name != name)
            continue;
        if (const auto* text = std::get_if<std::u16string>(&property.value.data))
            return toUtf8(*text);
        if (const auto* number = std::get_if<std::uint64_t>(&property.value.data))
            return std::to_string(*number);
        std::string all;
        for (const auto& text : std::get<std::vector<std::u16string>>(property.value.data))
            all += (all.empty() ? "" : "|") + toUtf8(text);
        return all;
    }
    return {};
}

}  // namespace kelvane::testing
