// Pictures whose pixels are known, and how previews differ from them and from one another.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

#include "platform/media_decoding.h"

namespace kelvane::testing {

using Colour = std::array<int, 3>;  // red, green, blue

// A PPM file.
[[nodiscard]] std::string paintedPicture(std::uint32_t width, std::uint32_t height,
                                         const std::function<Colour(std::uint32_t x, std::uint32_t y)>& colourAt);
// Its corners are red, green, blue and yellow, from the top left one on, row by row.
[[nodiscard]] std::string cornersPicture(std::uint32_t width, std::uint32_t height);
// Soft hills of all colours with sharp discs on them, the same picture at every size.
[[nodiscard]] std::string landscape(std::uint32_t width, std::uint32_t height);

// Such a picture in the format of the name, by the command of libvips. options: of the writer, as "[Q=90]".
[[nodiscard]] std::string inFormat(const std::string& ppm, std::string_view fileName, const std::string& options = {});

// The preview that the program makes of these bytes.
[[nodiscard]] DecodedPicture picturePreview(const std::string& bytes, std::string_view fileName,
                                            const PreviewBounds& bounds = {});
[[nodiscard]] DecodedPicture filmPreview(const std::string& bytes, std::string_view fileName);

[[nodiscard]] std::string sizeText(const DecodedPicture& picture);  // "200x150", or the number of the fault
[[nodiscard]] Colour pixelAt(const DecodedPicture& picture, std::uint32_t x, std::uint32_t y);
// The letters of the corners' colours, as "RGBY"; "?" for any other colour.
[[nodiscard]] std::string cornersOf(const DecodedPicture& picture);
// Mean difference of all samples; 255 for pictures of different sizes, or without pixels.
[[nodiscard]] double differenceOf(const DecodedPicture& a, const DecodedPicture& b);

}  // namespace kelvane::testing
