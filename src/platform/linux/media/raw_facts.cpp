#include "platform/linux/media/raw_facts.h"

#include <charconv>
#include <chrono>
#include <cmath>
#include <ctime>
#include <memory>
#include <string_view>

#include "platform/lenient_text.h"
#include "platform/linux/media/raw_stream.h"

namespace kelvane::linux_os {
namespace {

template <std::size_t size>
std::u16string textOf(const char (&field)[size])
{
    return lenientText({field, size});
}

// 0.004f is meant as 0.004, which is what the tags of other files of the same camera give.
double asWritten(float number)
{
    char digits[64];
    const auto end = std::to_chars(digits, digits + sizeof digits, number);
    double value = 0;
    std::from_chars(digits, end.ptr, value);
    return value;
}

void addPositive(std::string_view name, float value, FactList& facts)
{
    if (value > 0 && std::isfinite(value))
        facts.real(name, asWritten(value));
}

// The library has made a moment of what the clock showed, by the zone of this computer.
void addTime(std::time_t moment, FactList& facts)
{
    std::tm clock{};
    if (moment > 0 && ::localtime_r(&moment, &clock) != nullptr)
        facts.date("System.Photo.DateTaken", fileTimeFromUnix(::timegm(&clock), 0));
}

void addPlace(const libraw_gps_info_t& gps, FactList& facts)
{
    if (gps.gpsparsed == 0)
        return;
    const auto angle = [](const float(&parts)[3]) {
        return std::vector<double>{asWritten(parts[0]), asWritten(parts[1]), asWritten(parts[2])};
    };
    facts.text("System.GPS.LatitudeRef", std::u16string(1, static_cast<char16_t>(gps.latref)));
    facts.text("System.GPS.LongitudeRef", std::u16string(1, static_cast<char16_t>(gps.longref)));
    facts.reals("System.GPS.Latitude", angle(gps.latitude));
    facts.reals("System.GPS.Longitude", angle(gps.longitude));
    facts.real("System.GPS.Altitude", asWritten(gps.altitude));
}

void addCamera(const libraw_data_t& data, FactList& facts)
{
    facts.text("System.Photo.CameraManufacturer", textOf(data.idata.make));
    facts.text("System.Photo.CameraModel", textOf(data.idata.model));
    facts.text("System.SoftwareUsed", textOf(data.idata.software));
    facts.text("System.Photo.CameraSerialNumber", textOf(data.shootinginfo.BodySerial));
    facts.text("System.Photo.LensManufacturer", textOf(data.lens.LensMake));
    facts.text("System.Photo.LensModel", textOf(data.lens.Lens));
    if (data.lens.FocalLengthIn35mmFormat > 0)
        facts.number("System.Photo.FocalLengthInFilm", data.lens.FocalLengthIn35mmFormat);
    facts.text("System.Author", textOf(data.other.artist));
}

void addSettings(const libraw_imgother_t& settings, FactList& facts)
{
    if (settings.iso_speed > 0 && settings.iso_speed < 1e6F)
        facts.number("System.Photo.ISOSpeed", std::lround(settings.iso_speed));
    addPositive("System.Photo.ExposureTime", settings.shutter, facts);
    addPositive("System.Photo.FNumber", settings.aperture, facts);
    addPositive("System.Photo.FocalLength", settings.focal_len, facts);
    addTime(settings.timestamp, facts);
    addPlace(settings.parsed_gps, facts);
}

}  // namespace

RawSize addRawFacts(RandomAccessFile& file, FactList& facts)
{
    // Hundreds of kilobytes, too much for a stack.
    const auto raw = std::make_unique<LibRaw>();
    RawStream stream(file);
    if (raw->open_datastream(&stream) != LIBRAW_SUCCESS)
        return {};
    addCamera(raw->imgdata, facts);
    addSettings(raw->imgdata.other, facts);
    const RawSize size{raw->imgdata.sizes.width, raw->imgdata.sizes.height};
    raw->recycle();
    return size;
}

}  // namespace kelvane::linux_os
