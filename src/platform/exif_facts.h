// What cameras and programs write into EXIF (CIPA DC-008, "Exchangeable image file format").
#pragma once

#include "platform/fact_list.h"
#include "platform/tiff_tags.h"

namespace kelvane {

// The camera, how it was set, when and where the picture was taken.
void addCameraFacts(const TiffTags& tags, FactList& facts);

// What people wrote: title, subject, comment, keywords, authors, rating; the ones of Windows' own tags before those of
// the standard.
void addExifWords(const TiffTags& tags, FactList& facts);

// The place: angles as degrees, minutes and seconds, with their references beside them.
void addGpsFacts(const TiffDirectory& gps, FactList& facts);

// A text of ASCII type, whose charset nobody keeps to.
[[nodiscard]] std::u16string exifText(const TiffField* field);
// A text that names its charset in front of itself. Both are empty for no field.
[[nodiscard]] std::u16string markedExifText(const TiffField* field);

}  // namespace kelvane
