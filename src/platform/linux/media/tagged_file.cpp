#include "platform/linux/media/tagged_file.h"

#include <algorithm>
#include <array>
#include <string>
#include <taglib/aifffile.h>
#include <taglib/apefile.h>
#include <taglib/asffile.h>
#include <taglib/flacfile.h>
#include <taglib/id3v1tag.h>
#include <taglib/id3v2framefactory.h>
#include <taglib/id3v2header.h>
#include <taglib/id3v2tag.h>
#include <taglib/infotag.h>
#include <taglib/mp4file.h>
#include <taglib/mpcfile.h>
#include <taglib/mpegfile.h>
#include <taglib/oggflacfile.h>
#include <taglib/opusfile.h>
#include <taglib/speexfile.h>
#include <taglib/trueaudiofile.h>
#include <taglib/vorbisfile.h>
#include <taglib/wavfile.h>
#include <taglib/wavpackfile.h>

#include "base/utf.h"
#include "platform/lenient_text.h"

namespace kelvane::linux_os {
namespace {

using FileHandle = std::unique_ptr<TagLib::File>;

// Some of the classes begin to read where the stream is.
template <class Format>
FileHandle make(TaglibStream& stream)
{
    stream.seek(0);
    return std::make_unique<Format>(&stream, false);
}

template <>
FileHandle make<TagLib::MPEG::File>(TaglibStream& stream)
{
    stream.seek(0);
    return std::make_unique<TagLib::MPEG::File>(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
}

template <>
FileHandle make<TagLib::FLAC::File>(TaglibStream& stream)
{
    stream.seek(0);
    return std::make_unique<TagLib::FLAC::File>(&stream, TagLib::ID3v2::FrameFactory::instance(), false);
}

template <class Format>
FileHandle makeIfIts(TaglibStream& stream)
{
    return Format::isSupported(&stream) ? make<Format>(stream) : nullptr;
}

// What every file of a format has in one place. The library's own tests look for such marks anywhere in the beginning,
// where sound may hold them by chance.
struct Mark {
    std::size_t position;
    std::string_view bytes;
    FileHandle (*make)(TaglibStream&);
};

FileHandle makeOgg(TaglibStream& stream)
{
    for (const auto attempt : {&makeIfIts<TagLib::Vorbis::File>, &makeIfIts<TagLib::Ogg::Opus::File>,
                               &makeIfIts<TagLib::Ogg::FLAC::File>, &makeIfIts<TagLib::Ogg::Speex::File>})
        if (FileHandle file = attempt(stream))
            return file;
    return nullptr;
}

constexpr std::array marks = {
    Mark{0, "fLaC", &make<TagLib::FLAC::File>},
    Mark{0, "OggS", &makeOgg},
    Mark{8, "WAVE", &make<TagLib::RIFF::WAV::File>},
    Mark{8, "AIFF", &make<TagLib::RIFF::AIFF::File>},
    Mark{8, "AIFC", &make<TagLib::RIFF::AIFF::File>},
    Mark{4, "ftyp", &make<TagLib::MP4::File>},
    Mark{0, "\x30\x26\xB2\x75\x8E\x66\xCF\x11", &make<TagLib::ASF::File>},
    Mark{0, "MAC ", &make<TagLib::APE::File>},
    Mark{0, "MPCK", &make<TagLib::MPC::File>},
    Mark{0, "MP+", &make<TagLib::MPC::File>},
    Mark{0, "wvpk", &make<TagLib::WavPack::File>},
    Mark{0, "TTA1", &make<TagLib::TrueAudio::File>},
};

std::string beginningAt(TaglibStream& stream, long position)
{
    stream.seek(position);
    const TagLib::ByteVector bytes = stream.readBlock(16);
    return {bytes.data(), bytes.size()};
}

// Tags of MP3 are put in front of other formats too; the sound begins behind them.
std::string beginning(TaglibStream& stream)
{
    std::string bytes = beginningAt(stream, 0);
    if (!bytes.starts_with("ID3"))
        return bytes;
    const TagLib::ID3v2::Header header(TagLib::ByteVector(bytes.data(), static_cast<unsigned int>(bytes.size())));
    return beginningAt(stream, static_cast<long>(header.completeTagSize()));
}

FileHandle byContent(TaglibStream& stream)
{
    const std::string bytes = beginning(stream);
    for (const Mark& mark : marks)
        if (bytes.size() > mark.position && std::string_view(bytes).substr(mark.position).starts_with(mark.bytes))
            return mark.make(stream);
    return makeIfIts<TagLib::MPEG::File>(stream);
}

// Sound whose first frame is not where it should be, with its tags at the end.
FileHandle byName(TaglibStream& stream, std::string_view name)
{
    const std::string_view extension = name.substr(std::min(name.size(), name.rfind('.')));
    const bool mpeg = extension == ".mp3" || extension == ".MP3" || extension == ".mp2" || extension == ".aac";
    return mpeg ? make<TagLib::MPEG::File>(stream) : nullptr;
}

TagLib::String suggestedText(const TagLib::ByteVector& data)
{
    return {toUtf8(lenientText({data.data(), data.size()})), TagLib::String::UTF8};
}

class Id3v1Texts final : public TagLib::ID3v1::StringHandler {
public:
    TagLib::String parse(const TagLib::ByteVector& data) const override { return suggestedText(data); }
};

class Id3v2Texts final : public TagLib::ID3v2::Latin1StringHandler {
public:
    TagLib::String parse(const TagLib::ByteVector& data) const override { return suggestedText(data); }
};

class InfoTexts final : public TagLib::RIFF::Info::StringHandler {
public:
    TagLib::String parse(const TagLib::ByteVector& data) const override { return suggestedText(data); }
};

}  // namespace

void readNarrowTextsLeniently()
{
    static const Id3v1Texts id3v1;
    static const Id3v2Texts id3v2;
    static const InfoTexts info;
    TagLib::ID3v1::Tag::setStringHandler(&id3v1);
    TagLib::ID3v2::Tag::setLatin1StringHandler(&id3v2);
    TagLib::RIFF::Info::Tag::setStringHandler(&info);
}

FileHandle openTagged(TaglibStream& stream, std::string_view fileName)
{
    FileHandle file = byContent(stream);
    if (!file || !file->isValid())
        file = byName(stream, fileName);
    return file && file->isValid() ? std::move(file) : nullptr;
}

}  // namespace kelvane::linux_os
