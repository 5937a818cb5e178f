// Texts without markup, and subtitles: what is in UTF-8 comes out as it is.
#include "base/utf.h"
#include "document_fuzz.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    namespace testing = kelvane::testing;
    testing::tryDocument("words.txt", data, size);
    testing::tryDocument("film.srt", data, size);
    testing::DocumentWorld world;
    world.decoding = std::make_unique<testing::NarrowDecoding>();
    const std::string content(reinterpret_cast<const char*>(data), size);
    const auto source = world.extract("words.cpp", content);
    const bool whole = source.outcome == kelvane::TextOutcome::extracted && source.plain && !source.cut;
    if (whole && !content.starts_with("\xEF\xBB\xBF") && kelvane::isValidUtf8(content))
        kelvane::require(kelvane::toUtf8(source.text) == content);
    return 0;
}
