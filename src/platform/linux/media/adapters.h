// What the adapters of this folder offer to the worker that decodes: one factory each. Their libraries are linked into
// that worker alone.
#pragma once

#include <memory>

#include "platform/media_decoding.h"
#include "platform/xml_parsing.h"

namespace kelvane {

[[nodiscard]] std::unique_ptr<SoundDecoding> makeFfmpegSoundDecoding();
[[nodiscard]] std::unique_ptr<FilmDecoding> makeFfmpegFilmDecoding();
[[nodiscard]] std::unique_ptr<FactReading> makeFfmpegFacts();
[[nodiscard]] std::unique_ptr<FactReading> makeTaglibFacts();
[[nodiscard]] std::unique_ptr<PictureDecoding> makeVipsPictureDecoding();
// xml outlives it.
[[nodiscard]] std::unique_ptr<FactReading> makePictureFacts(XmlParsing& xml);

}  // namespace kelvane
