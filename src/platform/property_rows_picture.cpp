#include <array>

#include "platform/property_rows.h"

namespace kelvane {
namespace {

constexpr std::array pictureList = {
    amountRow("System.Image.HorizontalSize", {property_set::image, 3}, VarType::uint32, u"Width"),
    amountRow("System.Image.VerticalSize", {property_set::image, 4}, VarType::uint32, u"Height"),
    textRow("System.Image.Dimensions", {property_set::image, 13}, u"Dimensions"),
    realRow("System.Image.HorizontalResolution", {property_set::image, 5}, u"Horizontal resolution"),
    realRow("System.Image.VerticalResolution", {property_set::image, 6}, u"Vertical resolution"),
    amountRow("System.Image.BitDepth", {property_set::image, 7}, VarType::uint32, u"Bit depth"),
    choiceRow("System.Image.ColorSpace", {property_set::exif, 40961}, VarType::uint16, u"Color representation"),
    choiceRow("System.Image.Compression", {property_set::exif, 259}, VarType::uint16, u"Compression"),
    textRow("System.Image.CompressionText", {formatId("{3F08E66F-2F44-4BB9-A682-AC35D2562322}"), onlyMember},
            u"Compression text"),
    choiceRow("System.Image.ResolutionUnit", {formatId("{19B51FA6-1F92-4A5C-AB48-7DF0ABD67444}"), onlyMember},
              VarType::int16, u"Resolution unit"),
    realRow("System.Image.CompressedBitsPerPixel", {formatId("{364B6FA9-37AB-482A-BE2B-AE02F60D4318}"), onlyMember},
            u"Compressed bits per pixel"),
    textRow("System.Image.ImageID", {formatId("{10DABE05-32AA-4C29-BF1A-63E2D220587F}"), onlyMember}, u"Image ID"),
    textRow("System.Photo.CameraManufacturer", {property_set::exif, 271}, u"Camera maker"),
    textRow("System.Photo.CameraModel", {property_set::exif, 272}, u"Camera model"),
    textRow("System.Photo.CameraSerialNumber", {property_set::exif, 273}, u"Camera serial number"),
    textRow("System.SoftwareUsed", {property_set::exif, 305}, u"Software used"),
    dateRow("System.Photo.DateTaken", {property_set::exif, 36867}, u"Date taken"),
    choiceRow("System.Photo.Orientation", {property_set::exif, 274}, VarType::uint16, u"Orientation"),
    realRow("System.Photo.ExposureTime", {property_set::exif, 33434}, u"Exposure time"),
    realRow("System.Photo.FNumber", {property_set::exif, 33437}, u"F-stop"),
    choiceRow("System.Photo.ExposureProgram", {property_set::exif, 34850}, VarType::uint32, u"Exposure program"),
    amountRow("System.Photo.ISOSpeed", {property_set::exif, 34855}, VarType::uint16, u"ISO speed"),
    realRow("System.Photo.ShutterSpeed", {property_set::exif, 37377}, u"Shutter speed"),
    realRow("System.Photo.Aperture", {property_set::exif, 37378}, u"Aperture"),
    realRow("System.Photo.ExposureBias", {property_set::exif, 37380}, u"Exposure bias"),
    realRow("System.Photo.SubjectDistance", {property_set::exif, 37382}, u"Subject distance"),
    choiceRow("System.Photo.MeteringMode", {property_set::exif, 37383}, VarType::uint16, u"Metering mode"),
    choiceRow("System.Photo.LightSource", {property_set::exif, 37384}, VarType::uint32, u"Light source"),
    choiceRow("System.Photo.Flash", {property_set::exif, 37385}, VarType::uint8, u"Flash mode"),
    realRow("System.Photo.FocalLength", {property_set::exif, 37386}, u"Focal length"),
    realRow("System.Photo.FlashEnergy", {property_set::exif, 41483}, u"Flash energy"),
    textsRow("System.Photo.Event", {property_set::exif, 18248}, u"Event"),
    realRow("System.Photo.MaxAperture", {formatId("{08F6D7C2-E3F2-44FC-AF1E-5AA5C81A2D3E}"), onlyMember},
            u"Max aperture"),
    amountRow("System.Photo.FocalLengthInFilm", {formatId("{A0E74609-B84D-4F49-B860-462BD9971F98}"), onlyMember},
              VarType::uint16, u"35mm focal length"),
    realRow("System.Photo.DigitalZoom", {formatId("{F85BF840-A925-4BC2-B0C4-8E36B598679E}"), onlyMember},
            u"Digital zoom"),
    realRow("System.Photo.Brightness", {formatId("{1A701BF6-478C-4361-83AB-3701BB053C58}"), onlyMember}, u"Brightness"),
    realRow("System.Photo.ExposureIndex", {formatId("{967B5AF8-995A-46ED-9E11-35B3C5B9782D}"), onlyMember},
            u"Exposure index"),
    choiceRow("System.Photo.WhiteBalance", {formatId("{EE3D3D8A-5381-4CFA-B13B-AAF66B5F4EC9}"), onlyMember},
              VarType::uint32, u"White balance"),
    choiceRow("System.Photo.Contrast", {formatId("{2A785BA9-8D23-4DED-82E6-60A350C86A10}"), onlyMember},
              VarType::uint32, u"Contrast"),
    choiceRow("System.Photo.Saturation", {formatId("{49237325-A95A-4F67-B211-816B2D45D2E0}"), onlyMember},
              VarType::uint32, u"Saturation"),
    choiceRow("System.Photo.Sharpness", {formatId("{FC6976DB-8349-4970-AE97-B3C5316A08F0}"), onlyMember},
              VarType::uint32, u"Sharpness"),
    choiceRow("System.Photo.ProgramMode", {formatId("{6D217F6D-3F6A-4825-B470-5F03CA2FBE9B}"), onlyMember},
              VarType::uint32, u"Program mode"),
    textRow("System.Photo.EXIFVersion", {formatId("{D35F743A-EB2E-47F2-A286-844132CB1427}"), onlyMember},
            u"EXIF version"),
    textRow("System.Photo.LensManufacturer", {formatId("{E6DDCAF7-29C5-4F0A-9A68-D19412EC7090}"), onlyMember},
            u"Lens maker"),
    textRow("System.Photo.LensModel", {formatId("{E1277516-2B5F-4869-89B1-2E585BD38B7A}"), onlyMember}, u"Lens model"),
    textRow("System.Photo.FlashManufacturer", {formatId("{AABAF6C9-E0C5-4719-8585-57B103E584FE}"), onlyMember},
            u"Flash maker"),
    textRow("System.Photo.FlashModel", {formatId("{FE83BB35-4D1A-42E2-916B-06F3E1AF719E}"), onlyMember},
            u"Flash model"),
    textsRow("System.Photo.PeopleNames", {formatId("{E8309B6E-084C-49B4-B1FC-90A80331B638}"), onlyMember}, u"People"),
};

}  // namespace

std::span<const PropertyInfo> pictureRows() noexcept
{
    return pictureList;
}

}  // namespace kelvane
