// The program's own properties. The format identifiers are the published ones where a property belongs to a set of the
// system; upper bits that nothing here asks for are kept, since type words are part of a row's public description.
#include <array>

#include "platform/format_id.h"
#include "props/property_catalogue.h"

namespace kelvane {
namespace {

constexpr FormatId version = formatId("{0CEF7D53-FA64-11D1-A203-0000F81FEDEE}");
constexpr FormatId storage = formatId("{B725F130-47EF-101A-A5F1-02608C9EEBAC}");
constexpr FormatId infoTip = formatId("{C9944A21-A406-48FE-8225-AEC7E24C211B}");
constexpr FormatId folder = formatId("{09329B74-40A3-4C68-BF07-AF9A572F607C}");
constexpr FormatId kinds = formatId("{1E3EE840-BC2B-476C-8237-2ACD1A839B22}");
constexpr FormatId madeUp = formatId("{00010203-0405-0607-0809-0A0B0C0D0E0F}");
constexpr FormatId shellDetails = formatId("{28636AA6-953D-11D2-B5D6-00C04FD918D0}");
constexpr FormatId fileLinks = formatId("{B9B4B3FC-2B51-4A42-B5D8-324146AFCF25}");
constexpr FormatId summary = formatId("{F29F85E0-4FF9-1068-AB91-08002B27B3D9}");
constexpr FormatId audio = formatId("{64440490-4C8B-11D1-8B70-080036B11A03}");
constexpr FormatId music = formatId("{56A3372E-CE9C-11D2-9F0E-006097C686F6}");

constexpr std::array<PropertyInfo, stockPropertyCount> rows = {{
    {"Stock.SignedBy",
     {version, 70},
     VarType::wideText,
     0x0000,
     u"Signed by",
     u"Authenticode digital signature of executable file, verifying program creator"},
    {"Stock.FileAttributes",
     {storage, 13},
     VarType::wideText,
     0x0410,
     u"Attributes",
     u"File attributes (Archive, Read-only, Hidden etc)"},
    {"Stock.InfoTipText",
     {infoTip, 17},
     VarType::wideText,
     0x0800,
     u"Infotip",
     u"Extended file type specific information, showing as tooltip text"},
    {"Stock.IsFolder",
     {folder, 111},
     VarType::boolean,
     0x0400,
     u"Folder",
     u"Whether item is a plain file or directory (folder)"},
    {"Stock.Kind",
     {kinds, 333},
     VarType::wideText,
     0x0C06,
     u"Type",
     u"Customizable kind using file extension wildcards"},
    {"*",
     {madeUp, 17},
     VarType::wideText,
     0x0A04,
     u"Find",
     u"Search all common text properties (name, contents, author etc)"},
    {"Stock.Algorithmic",
     {madeUp, 18},
     VarType::wideText,
     0x0A00,
     u"Complex",
     u"Free form expression where file properties can be combined with boolean and arithmetic operators"},
    {"Stock.TotalFileSize",
     {shellDetails, 14},
     VarType::uint64,
     0x0080,
     u"Size on disk",
     u"Actual disk space occupied, accounting for parallel streams and compressed/sparse attributes"},
    {"Stock.ADS", {fileLinks, 101}, VarType::uint32, 0x0080, u"Streams", u"Number of NTFS alternate data streams"},
    {"Stock.ADSNames",
     {fileLinks, 102},
     VarType::wideText,
     0x0000,
     u"Stream names",
     u"List of (any) named parallel streams"},
    {"Stock.FileCount",
     {shellDetails, 12},
     VarType::uint32,
     0x0080,
     u"Folder contents",
     u"Number of items in a folder that match a type (default: count all files)"},
    {"Stock.Thumbnail", {summary, 17}, VarType::object, 0x0200, u"Thumbnail", u"Small item preview picture"},
    {"Stock.GroupID", {shellDetails, 1234}, VarType::uint32, 0x0680, u"Group #", u"Duplicate group ID number"},
    {"Stock.HardLinks",
     {fileLinks, 100},
     VarType::uint32,
     0x0080,
     u"Hard links",
     u"Number of NTFS hard linked files on the same drive"},
    {"Stock.SimDocDescriptor", {storage, 1900}, VarType::object, 0x0200, u"simdoc", u"simdoc"},
    {"Stock.AudioFingerprint", {audio, 501}, VarType::object, 0x0200, u"mp3finger", u"mp3finger"},
    {"Stock.AudioList",
     {music, 333},
     VarType::wideText,
     0x1001,
     u"Audio information",
     u"Combined album, artist and song title information, used for fuzzy matching"},
    {"Stock.VideoList",
     {music, 334},
     VarType::wideText,
     0x1001,
     u"Video information",
     u"Combined movie title and people information, used for fuzzy matching"},
    {"Stock.BookList",
     {music, 335},
     VarType::wideText,
     0x1001,
     u"Book information",
     u"Combined book title and author information, used for fuzzy matching"},
}};

}  // namespace

std::span<const PropertyInfo> stockTable() noexcept
{
    return rows;
}

}  // namespace kelvane
