#include "platform/iptc_facts.h"

#include <array>
#include <map>
#include <optional>

#include "platform/camera_time.h"
#include "platform/lenient_text.h"

namespace kelvane {
namespace {

constexpr std::string_view blockMark("Photoshop 3.0\0", 14);
constexpr std::size_t iptcResource = 0x0404;
constexpr std::uint8_t pictureRecord = 2;
constexpr std::uint8_t dateCreated = 55;
constexpr std::uint8_t timeCreated = 60;

struct DataSetRow {
    std::uint8_t number;
    std::string_view property;
};

constexpr std::array dataSets = {
    DataSetRow{5, "System.Title"},     DataSetRow{25, "System.Keywords"},   DataSetRow{80, "System.Author"},
    DataSetRow{105, "System.Subject"}, DataSetRow{116, "System.Copyright"}, DataSetRow{120, "System.Comment"},
};

// Numbers with the high byte first; nothing, and no step forward, where too few bytes are left.
class Bytes {
public:
    explicit Bytes(std::string_view bytes) : rest_(bytes) {}

    std::optional<std::string_view> take(std::size_t count)
    {
        if (count > rest_.size())
            return std::nullopt;
        const std::string_view taken = rest_.substr(0, count);
        rest_.remove_prefix(count);
        return taken;
    }
    std::optional<std::size_t> number(std::size_t width)
    {
        const auto digits = take(width);
        if (!digits)
            return std::nullopt;
        std::size_t value = 0;
        for (const char digit : *digits)
            value = value << 8 | static_cast<unsigned char>(digit);
        return value;
    }
    std::string_view rest() const { return rest_; }

private:
    std::string_view rest_;
};

// A name, one byte of length before it, and data, four bytes of length before it; both filled up to even lengths.
std::string_view resourceIn(std::string_view block)
{
    Bytes bytes(block);
    while (bytes.rest().starts_with("8BIM")) {
        const auto mark = bytes.take(4);
        const auto kind = bytes.number(2);
        const auto nameLength = bytes.number(1);
        if (!mark || !nameLength || !bytes.take(*nameLength + (*nameLength + 1) % 2))
            break;
        const auto length = bytes.number(4);
        if (!length)
            break;
        if (kind == iptcResource)
            return bytes.rest().substr(0, *length);
        if (!bytes.take(*length + *length % 2))
            break;
    }
    return {};
}

// Up to 32767 bytes, or as many as a number of that many bytes says.
std::optional<std::size_t> dataLength(Bytes& bytes)
{
    const auto length = bytes.number(2);
    if (!length || *length < 0x8000)
        return length;
    const std::size_t width = *length & 0x7FFF;
    return width <= 4 ? bytes.number(width) : std::nullopt;
}

using DataSets = std::map<std::uint8_t, std::vector<std::u16string>>;

DataSets readDataSets(std::string_view records)
{
    DataSets sets;
    Bytes bytes(records);
    while (bytes.rest().starts_with('\x1C')) {
        const auto mark = bytes.take(1);
        const auto record = bytes.number(1);
        const auto number = bytes.number(1);
        const auto length = dataLength(bytes);
        const auto data = length ? bytes.take(*length) : std::nullopt;
        if (!mark || !data)
            break;
        if (record == pictureRecord)
            sets[static_cast<std::uint8_t>(*number)].push_back(lenientText(*data));
    }
    return sets;
}

std::string firstOf(const DataSets& sets, std::uint8_t number)
{
    const auto found = sets.find(number);
    return found != sets.end() ? std::string(found->second.front().begin(), found->second.front().end())
                               : std::string();
}

// "20240517" and "102030+0200"
void addDate(const DataSets& sets, FactList& facts)
{
    const std::string day = firstOf(sets, dateCreated);
    if (day.size() < 8)
        return;
    std::string text = day.substr(0, 4) + ":" + day.substr(4, 2) + ":" + day.substr(6, 2);
    if (const std::string time = firstOf(sets, timeCreated); time.size() >= 6)
        text += " " + time.substr(0, 2) + ":" + time.substr(2, 2) + ":" + time.substr(4, 2);
    if (const auto moment = cameraTime(text))
        facts.date("System.Photo.DateTaken", *moment);
}

}  // namespace

void addIptcFacts(std::string_view block, FactList& facts)
{
    if (block.starts_with(blockMark))
        block = resourceIn(block.substr(blockMark.size()));
    const DataSets sets = readDataSets(block);
    for (const DataSetRow& row : dataSets)
        if (const auto found = sets.find(row.number); found != sets.end())
            facts.texts(row.property, found->second);
    addDate(sets, facts);
}

}  // namespace kelvane
