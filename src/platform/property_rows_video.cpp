#include <array>

#include "platform/property_rows.h"

namespace kelvane {
namespace {

constexpr std::array videoList = {
    amountRow("System.Media.Duration", {property_set::audio, 3}, VarType::uint64, u"Length"),
    propertyRow("System.Media.Year", {property_set::music, 5}, VarType::uint32, u"Year"),
    textRow("System.Media.SubTitle", {property_set::music, 38}, u"Subtitle"),
    amountRow("System.Media.FrameCount", {property_set::image, 12}, VarType::uint32, u"Frame count"),
    textRow("System.Media.ContentDistributor", {property_set::media, 18}, u"Content distributor"),
    textsRow("System.Media.Producer", {property_set::media, 22}, u"Producers"),
    textsRow("System.Media.Writer", {property_set::media, 23}, u"Writers"),
    textRow("System.Media.Publisher", {property_set::media, 30}, u"Publisher"),
    textRow("System.Media.AuthorUrl", {property_set::media, 32}, u"Author URL"),
    textRow("System.Media.PromotionUrl", {property_set::media, 33}, u"Promotion URL"),
    textRow("System.Media.UserWebUrl", {property_set::media, 34}, u"User web URL"),
    textRow("System.Media.UniqueFileIdentifier", {property_set::media, 35}, u"Unique file identifier"),
    textRow("System.Media.EncodedBy", {property_set::media, 36}, u"Encoded by"),
    textRow("System.Media.EncodingSettings", {property_set::media, 37}, u"Encoding settings"),
    textRow("System.Media.ProtectionType", {property_set::media, 38}, u"Protection type"),
    textRow("System.Media.SeriesName", {property_set::media, 42}, u"Series name"),
    propertyRow("System.Media.EpisodeNumber", {property_set::media, 100}, VarType::uint32, u"Episode number"),
    propertyRow("System.Media.SeasonNumber", {property_set::media, 101}, VarType::uint32, u"Season number"),
    textRow("System.Media.ContentID", {property_set::media, 26}, u"Content ID"),
    textRow("System.Media.CreatorApplication", {property_set::media, 27}, u"Creating program"),
    amountRow("System.Media.AverageLevel", {formatId("{09EDD5B6-B301-43C5-9990-D00302EFFD46}"), onlyMember},
              VarType::uint32, u"Average volume level"),
    dateRow("System.Media.DateEncoded", {formatId("{2E4B640D-5019-46D8-8881-55414CC5CAA0}"), onlyMember},
            u"Media created"),
    textRow("System.Media.DateReleased", {formatId("{DE41CC29-6971-4290-B472-F59F2E2F31E2}"), onlyMember},
            u"Date released"),
    textsRow("System.Video.Director", {property_set::media, 20}, u"Directors"),
    textRow("System.Video.StreamName", {property_set::video, 2}, u"Video stream name"),
    amountRow("System.Video.FrameWidth", {property_set::video, 3}, VarType::uint32, u"Frame width"),
    amountRow("System.Video.FrameHeight", {property_set::video, 4}, VarType::uint32, u"Frame height"),
    amountRow("System.Video.FrameRate", {property_set::video, 6}, VarType::uint32, u"Frame rate"),
    amountRow("System.Video.EncodingBitrate", {property_set::video, 8}, VarType::uint32, u"Data rate"),
    amountRow("System.Video.SampleSize", {property_set::video, 9}, VarType::uint32, u"Video sample size"),
    textRow("System.Video.Compression", {property_set::video, 10}, u"Video compression"),
    propertyRow("System.Video.StreamNumber", {property_set::video, 11}, VarType::uint16, u"Video stream number"),
    amountRow("System.Video.HorizontalAspectRatio", {property_set::video, 42}, VarType::uint32,
              u"Horizontal aspect ratio"),
    amountRow("System.Video.TotalBitrate", {property_set::video, 43}, VarType::uint32, u"Total bit rate"),
    propertyRow("System.Video.FourCC", {property_set::video, 44}, VarType::uint32, u"Video codec code"),
    amountRow("System.Video.VerticalAspectRatio", {property_set::video, 45}, VarType::uint32, u"Vertical aspect ratio"),
    truthRow("System.DRM.IsProtected", {formatId("{AEAC19E4-89AE-4508-B9B7-BB867ABEE2ED}"), 2}, u"Protected"),
    textRow("System.RecordedTV.EpisodeName", {formatId("{6D748DE2-8D38-4CC3-AC60-F009B057C557}"), 2}, u"Episode name"),
    textRow("System.RecordedTV.ProgramDescription", {formatId("{6D748DE2-8D38-4CC3-AC60-F009B057C557}"), 3},
            u"Program description"),
    textRow("System.RecordedTV.StationCallSign", {formatId("{6D748DE2-8D38-4CC3-AC60-F009B057C557}"), 5},
            u"Station call sign"),
};

}  // namespace

std::span<const PropertyInfo> videoRows() noexcept
{
    return videoList;
}

}  // namespace kelvane
