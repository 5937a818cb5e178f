#include "platform/text_decoding.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <unicode/ucnv.h>
#include <unicode/ucsdet.h>

namespace kelvane {
namespace {

// The library counts in 32 bits.
constexpr std::size_t longestPiece = 1u << 20;
// Statistics do not get better by more than this.
constexpr std::size_t longestGuessed = 1u << 16;
// Out of 100. Below it the library has seen nothing that speaks for the charset.
constexpr std::int32_t leastConfidence = 10;

template <auto Close>
struct Closer {
    template <class Handle>
    void operator()(Handle* handle) const
    {
        Close(handle);
    }
};
using Converter = std::unique_ptr<UConverter, Closer<ucnv_close>>;
using Detector = std::unique_ptr<UCharsetDetector, Closer<ucsdet_close>>;

Error icuError(UErrorCode code, ErrorKind kind)
{
    return {kind, 0, u_errorName(code)};
}

// Converts a piece of at most longestPiece bytes; a character that it cuts off stays in the converter.
Status appendPiece(UConverter* converter, std::string_view piece, std::u16string& text)
{
    std::array<char16_t, 4096> buffer{};
    const char* source = piece.data();
    const char* const end = source + piece.size();
    UErrorCode code = U_BUFFER_OVERFLOW_ERROR;
    while (code == U_BUFFER_OVERFLOW_ERROR) {
        code = U_ZERO_ERROR;
        char16_t* target = buffer.data();
        ucnv_toUnicode(converter, &target, buffer.data() + buffer.size(), &source, end, nullptr, false, &code);
        text.append(buffer.data(), target);
    }
    if (U_FAILURE(code))
        return icuError(code, ErrorKind::invalid);
    return {};
}

Converter converterOf(std::string_view charset, UErrorCode& code)
{
    return Converter(ucnv_open(std::string(charset).c_str(), &code));
}

bool isWide(std::string_view charset)
{
    return charset.starts_with("UTF-16") || charset.starts_with("UTF-32");
}

class IcuDecoding final : public TextDecoding {
public:
    Result<std::u16string> decode(std::span<const std::byte> bytes, std::string_view charset) const override
    {
        UErrorCode code = U_ZERO_ERROR;
        // An empty name would mean the system's own charset.
        const Converter converter = charset.empty() ? nullptr : converterOf(charset, code);
        if (!converter || U_FAILURE(code))
            return icuError(code, ErrorKind::notFound);
        std::string_view rest(reinterpret_cast<const char*>(bytes.data()), bytes.size());
        std::u16string text;
        text.reserve(rest.size());
        while (!rest.empty()) {
            const std::string_view piece = rest.substr(0, longestPiece);
            if (Status status = appendPiece(converter.get(), piece, text); !status)
                return status.error();
            rest.remove_prefix(piece.size());
        }
        if (text.starts_with(u'\uFEFF'))
            text.erase(0, 1);
        return text;
    }

    // UTF-16 and UTF-32 are left out: the library takes binary data for them too easily.
    std::optional<std::string> guess(std::span<const std::byte> bytes) const override
    {
        UErrorCode code = U_ZERO_ERROR;
        const Detector detector(ucsdet_open(&code));
        if (!detector)
            return std::nullopt;
        ucsdet_enableInputFilter(detector.get(), true);  // tags of markup, where there are any
        const auto length = static_cast<std::int32_t>(std::min(bytes.size(), longestGuessed));
        ucsdet_setText(detector.get(), reinterpret_cast<const char*>(bytes.data()), length, &code);
        std::int32_t count = 0;
        const UCharsetMatch** matches = ucsdet_detectAll(detector.get(), &count, &code);
        for (std::int32_t i = 0; U_SUCCESS(code) && i < count; ++i) {
            const std::string name = ucsdet_getName(matches[i], &code);
            if (ucsdet_getConfidence(matches[i], &code) < leastConfidence)
                break;
            if (!isWide(name))
                return name;
        }
        return std::nullopt;
    }
};

}  // namespace

std::unique_ptr<TextDecoding> makeTextDecoding()
{
    return std::make_unique<IcuDecoding>();
}

}  // namespace kelvane
