#include <array>

#include "platform/property_rows.h"

namespace kelvane {
namespace {

constexpr std::array musicList = {
    textsRow("System.Music.Artist", {property_set::music, 2}, u"Contributing artists"),
    textRow("System.Music.AlbumTitle", {property_set::music, 4}, u"Album"),
    textRow("System.Music.AlbumArtist", {property_set::music, 13}, u"Album artist"),
    textRow("System.Music.DisplayArtist", {formatId("{FD122953-FA93-4EF7-92C3-04C946B2F7C8}"), onlyMember}, u"Artist"),
    textRow("System.Music.AlbumID", {property_set::music, 100}, u"Album ID"),
    propertyRow("System.Music.TrackNumber", {property_set::music, 7}, VarType::uint32, u"Track number"),
    propertyRow("System.Music.DiscNumber", {formatId("{6AFE7437-9BCD-49C7-80FE-4A5C65FA5874}"), 104}, VarType::uint32,
                u"Disc number"),
    textRow("System.Music.PartOfSet", {property_set::music, 37}, u"Part of set"),
    textsRow("System.Music.Genre", {property_set::music, 11}, u"Genre"),
    textsRow("System.Music.Composer", {property_set::media, 19}, u"Composers"),
    textsRow("System.Music.Conductor", {property_set::music, 36}, u"Conductors"),
    textRow("System.Music.ContentGroupDescription", {property_set::music, 33}, u"Group description"),
    textRow("System.Music.Period", {property_set::media, 31}, u"Period"),
    textRow("System.Music.Mood", {property_set::music, 39}, u"Mood"),
    textRow("System.Music.InitialKey", {property_set::music, 34}, u"Initial key"),
    textRow("System.Music.BeatsPerMinute", {property_set::music, 35}, u"Beats per minute"),
    textRow("System.Music.Lyrics", {property_set::music, 12}, u"Lyrics"),
    truthRow("System.Music.IsCompilation", {formatId("{C449D5CB-9EA4-4809-82E8-AF9D59DED6D1}"), onlyMember},
             u"Part of a compilation"),
    textRow("System.Audio.Format", {property_set::audio, 2}, u"Audio format"),
    amountRow("System.Audio.EncodingBitrate", {property_set::audio, 4}, VarType::uint32, u"Bit rate"),
    amountRow("System.Audio.SampleRate", {property_set::audio, 5}, VarType::uint32, u"Audio sample rate"),
    amountRow("System.Audio.SampleSize", {property_set::audio, 6}, VarType::uint32, u"Audio sample size"),
    amountRow("System.Audio.ChannelCount", {property_set::audio, 7}, VarType::uint32, u"Channels"),
    propertyRow("System.Audio.StreamNumber", {property_set::audio, 8}, VarType::uint16, u"Audio stream number"),
    textRow("System.Audio.StreamName", {property_set::audio, 9}, u"Audio stream name"),
    textRow("System.Audio.Compression", {property_set::audio, 10}, u"Audio compression"),
    truthRow("System.Audio.IsVariableBitRate", {formatId("{E6822FEE-8C17-4D62-823C-8E9CFCBD1D5C}"), onlyMember},
             u"Variable bit rate"),
    amountRow("System.Audio.PeakValue", {formatId("{2579E5D0-1116-4084-BD9A-9B4F7CB4DF5E}"), onlyMember},
              VarType::uint32, u"Peak value"),
};

}  // namespace

std::span<const PropertyInfo> musicRows() noexcept
{
    return musicList;
}

}  // namespace kelvane
