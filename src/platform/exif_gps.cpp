#include <array>
#include <cstdio>

#include "platform/camera_time.h"
#include "platform/exif_facts.h"

namespace kelvane {
namespace {

struct GpsRow {
    std::uint16_t tag;
    std::string_view property;
};

constexpr std::array references = {
    GpsRow{1, "System.GPS.LatitudeRef"},       GpsRow{3, "System.GPS.LongitudeRef"},
    GpsRow{8, "System.GPS.Satellites"},        GpsRow{9, "System.GPS.Status"},
    GpsRow{10, "System.GPS.MeasureMode"},      GpsRow{12, "System.GPS.SpeedRef"},
    GpsRow{14, "System.GPS.TrackRef"},         GpsRow{16, "System.GPS.ImgDirectionRef"},
    GpsRow{18, "System.GPS.MapDatum"},         GpsRow{19, "System.GPS.DestLatitudeRef"},
    GpsRow{21, "System.GPS.DestLongitudeRef"},
};
constexpr std::array angles = {
    GpsRow{2, "System.GPS.Latitude"},
    GpsRow{4, "System.GPS.Longitude"},
    GpsRow{20, "System.GPS.DestLatitude"},
    GpsRow{22, "System.GPS.DestLongitude"},
};
constexpr std::array reals = {
    GpsRow{6, "System.GPS.Altitude"}, GpsRow{11, "System.GPS.DOP"},          GpsRow{13, "System.GPS.Speed"},
    GpsRow{15, "System.GPS.Track"},   GpsRow{17, "System.GPS.ImgDirection"},
};

// Programs write angles in degrees and decimal minutes with seconds of 0/0, which are no number but mean none.
std::vector<double> angle(const TiffField& field)
{
    const auto degrees = field.real(0);
    if (!degrees || field.count() > 3)
        return {};
    return {*degrees, field.real(1).value_or(0), field.real(2).value_or(0)};
}

// The satellites' clock is one of UTC indeed.
void addDate(const TiffDirectory& gps, FactList& facts)
{
    const TiffField* day = TiffTags::find(gps, 29);
    if (day == nullptr)
        return;
    const auto date = cameraTime(day->bytes());
    const TiffField* clock = TiffTags::find(gps, 7);
    const std::vector<double> parts = clock != nullptr ? clock->reals() : std::vector<double>();
    double seconds = 0;
    if (parts.size() == 3)
        seconds = parts[0] * 3600 + parts[1] * 60 + parts[2];
    if (date && seconds >= 0 && seconds < 86'401)
        facts.date("System.GPS.Date", {date->ticks + static_cast<std::int64_t>(seconds * ticksPerSecond)});
}

}  // namespace

void addGpsFacts(const TiffDirectory& gps, FactList& facts)
{
    for (const GpsRow& row : references)
        facts.text(row.property, exifText(TiffTags::find(gps, row.tag)));
    for (const GpsRow& row : angles)
        if (const TiffField* field = TiffTags::find(gps, row.tag))
            facts.reals(row.property, angle(*field));
    for (const GpsRow& row : reals)
        if (const TiffField* field = TiffTags::find(gps, row.tag))
            if (const auto value = field->real())
                facts.real(row.property, *value);
    if (const TiffField* below = TiffTags::find(gps, 5))
        if (const auto value = below->whole())
            facts.number("System.GPS.AltitudeRef", *value);
    addDate(gps, facts);
    facts.text("System.GPS.ProcessingMethod", markedExifText(TiffTags::find(gps, 27)));
    facts.text("System.GPS.AreaInformation", markedExifText(TiffTags::find(gps, 28)));
}

}  // namespace kelvane
