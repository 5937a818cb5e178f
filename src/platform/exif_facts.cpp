#include "platform/exif_facts.h"

#include <array>
#include <cmath>

#include "platform/camera_time.h"
#include "platform/lenient_text.h"

namespace kelvane {
namespace {

struct FieldRow {
    std::uint16_t tag;
    std::string_view property;
};

constexpr std::array pictureTexts = {
    FieldRow{0x010F, "System.Photo.CameraManufacturer"},
    FieldRow{0x0110, "System.Photo.CameraModel"},
    FieldRow{0x0131, "System.SoftwareUsed"},
    FieldRow{0x0131, "System.ApplicationName"},
};
constexpr std::array pictureWholes = {
    FieldRow{0x0103, "System.Image.Compression"},
    FieldRow{0x0112, "System.Photo.Orientation"},
    FieldRow{0x0128, "System.Image.ResolutionUnit"},
};
constexpr std::array exifTexts = {
    FieldRow{0xA420, "System.Image.ImageID"},
    FieldRow{0xA431, "System.Photo.CameraSerialNumber"},
    FieldRow{0xA433, "System.Photo.LensManufacturer"},
    FieldRow{0xA434, "System.Photo.LensModel"},
};
constexpr std::array exifWholes = {
    FieldRow{0x8822, "System.Photo.ExposureProgram"},
    FieldRow{0x8827, "System.Photo.ISOSpeed"},
    FieldRow{0x9207, "System.Photo.MeteringMode"},
    FieldRow{0x9208, "System.Photo.LightSource"},
    FieldRow{0x9209, "System.Photo.Flash"},
    FieldRow{0xA001, "System.Image.ColorSpace"},
    FieldRow{0xA403, "System.Photo.WhiteBalance"},
    FieldRow{0xA408, "System.Photo.Contrast"},
    FieldRow{0xA405, "System.Photo.FocalLengthInFilm"},
    FieldRow{0xA409, "System.Photo.Saturation"},
    FieldRow{0xA40A, "System.Photo.Sharpness"},
};
constexpr std::array exifReals = {
    FieldRow{0x829A, "System.Photo.ExposureTime"},
    FieldRow{0x829D, "System.Photo.FNumber"},
    FieldRow{0x9102, "System.Image.CompressedBitsPerPixel"},
    FieldRow{0x9201, "System.Photo.ShutterSpeed"},
    FieldRow{0x9202, "System.Photo.Aperture"},
    FieldRow{0x9203, "System.Photo.Brightness"},
    FieldRow{0x9204, "System.Photo.ExposureBias"},
    FieldRow{0x9205, "System.Photo.MaxAperture"},
    FieldRow{0x9206, "System.Photo.SubjectDistance"},
    FieldRow{0x920A, "System.Photo.FocalLength"},
    FieldRow{0xA20B, "System.Photo.FlashEnergy"},
    FieldRow{0xA215, "System.Photo.ExposureIndex"},
    FieldRow{0xA404, "System.Photo.DigitalZoom"},
};

void addTexts(const TiffDirectory& directory, std::span<const FieldRow> rows, FactList& facts)
{
    for (const FieldRow& row : rows)
        facts.text(row.property, exifText(TiffTags::find(directory, row.tag)));
}

void addWholes(const TiffDirectory& directory, std::span<const FieldRow> rows, FactList& facts)
{
    for (const FieldRow& row : rows)
        if (const TiffField* field = TiffTags::find(directory, row.tag))
            if (const auto value = field->whole())
                facts.number(row.property, *value);
}

void addReals(const TiffDirectory& directory, std::span<const FieldRow> rows, FactList& facts)
{
    for (const FieldRow& row : rows)
        if (const TiffField* field = TiffTags::find(directory, row.tag))
            if (const auto value = field->real())
                facts.real(row.property, *value);
}

std::string_view bytesOf(const TiffDirectory& directory, std::uint16_t tag)
{
    const TiffField* field = TiffTags::find(directory, tag);
    return field != nullptr ? field->bytes() : std::string_view();
}

// When the shutter opened; else when what was on film was scanned.
void addDateTaken(const TiffDirectory& exif, FactList& facts)
{
    struct Clock {
        std::uint16_t time, fraction;
    };
    for (const Clock clock : {Clock{0x9003, 0x9291}, Clock{0x9004, 0x9292}})
        if (const auto time = cameraTime(bytesOf(exif, clock.time), bytesOf(exif, clock.fraction)))
            facts.date("System.Photo.DateTaken", *time);
}

// Four characters: "0232".
void addExifVersion(const TiffDirectory& exif, FactList& facts)
{
    facts.text("System.Photo.EXIFVersion", lenientText(bytesOf(exif, 0x9000)));
}

}  // namespace

std::u16string exifText(const TiffField* field)
{
    return field != nullptr ? lenientText(field->bytes()) : std::u16string();
}

void addCameraFacts(const TiffTags& tags, FactList& facts)
{
    if (!tags.pictures.empty()) {
        addTexts(tags.pictures.front(), pictureTexts, facts);
        addWholes(tags.pictures.front(), pictureWholes, facts);
        // TIFF/EP, the ancestor of many raw formats, keeps what belongs to EXIF beside the picture.
        addDateTaken(tags.pictures.front(), facts);
    }
    addTexts(tags.exif, exifTexts, facts);
    addWholes(tags.exif, exifWholes, facts);
    addReals(tags.exif, exifReals, facts);
    addDateTaken(tags.exif, facts);
    addExifVersion(tags.exif, facts);
    addGpsFacts(tags.gps, facts);
}

}  // namespace kelvane
