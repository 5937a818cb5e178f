#include "text/rtf_reader.h"

#include <algorithm>
#include <cstdint>
#include <map>
#include <utility>
#include <vector>

#include "text/document_values.h"
#include "text/rtf_charsets.h"
#include "text/rtf_tokens.h"
#include "text/rtf_words.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

constexpr int latinPage = 1252;
// Deeper groups are counted, and formatted like the one that they are in: memory must not follow a file of brackets.
constexpr std::size_t deepest = 1'000'000;

enum class Destination : std::uint8_t { body, skipped, fontTable, info, infoText, infoDate };

// What a group inherits from the one around it.
struct Group {
    Destination destination = Destination::body;
    Destination alternative = Destination::skipped;  // of the Unicode form that the group may hold
    std::uint8_t unicodeSkip = 1;
    bool hidden = false;
    int codePage = 0;  // of its font; 0: the document's
};

class RtfReader {
public:
    RtfReader(std::string_view document, const TextDecoding& decoding, DocumentSink& sink)
        : tokens_(document), decoding_(decoding), sink_(sink)
    {
    }

    void run()
    {
        while (sink_.wantsMore()) {
            const auto token = tokens_.next();
            if (!token)
                break;
            take(*token);
        }
        flush();
    }

private:
    Group& group() { return groups_.back(); }
    bool collects() { return group().destination == Destination::body || group().destination == Destination::infoText; }

    void take(const RtfToken& token)
    {
        switch (token.kind) {
        case RtfToken::Kind::begin:
            return begin();
        case RtfToken::Kind::end:
            return end();
        case RtfToken::Kind::word:
            return word(token);
        case RtfToken::Kind::symbol:
            return symbol(token.byte);
        case RtfToken::Kind::hex:
            return bytes({&token.byte, 1});
        case RtfToken::Kind::bytes:
            return bytes(token.text);
        }
    }

    void begin()
    {
        flush();
        skipNext_ = 0;
        starred_ = false;
        if (groups_.size() < deepest)
            groups_.push_back(group());
        else
            ++beyond_;
    }

    void end()
    {
        flush();
        skipNext_ = 0;
        starred_ = false;
        if (beyond_ > 0) {
            --beyond_;
            return;
        }
        if (groups_.size() == 1)
            return;
        const Destination ended = group().destination;
        groups_.pop_back();
        if (ended != group().destination)
            finish(ended);
    }

    void finish(Destination ended)
    {
        if (ended == Destination::infoText)
            putInfoText();
        else if (ended == Destination::infoDate)
            putInfoDate();
    }

    void bytes(std::string_view text)
    {
        const std::size_t skipped = std::min(skipNext_, text.size());
        skipNext_ -= skipped;
        if (collects())
            pending_ += text.substr(skipped);
    }

    // Counts one character that stands in for one in Unicode that was taken already.
    bool standsIn()
    {
        const bool skipped = skipNext_ > 0;
        skipNext_ -= skipped ? 1 : 0;
        return skipped;
    }

    void symbol(char byte)
    {
        switch (byte) {
        case '*':
            starred_ = true;
            return;
        case '\\':
        case '{':
        case '}':
            return bytes({&byte, 1});
        case '~':
            return character(0xA0);
        case '_':
            return character(0x2011);
        case '\r':
        case '\n':
            return part(RtfAction::lineBreak);
        case '\t':
            return part(RtfAction::gap);
        default:
            return;
        }
    }

    void character(char16_t unit)
    {
        if (standsIn())
            return;
        flush();
        emit({&unit, 1});
    }

    void part(RtfAction action)
    {
        flush();
        if (group().destination != Destination::body || group().hidden)
            return;
        if (action == RtfAction::lineBreak)
            sink_.lineBreak();
        else
            sink_.gap();
    }

    void word(const RtfToken& token)
    {
        const RtfWord& row = rtfWord(token.text);
        const bool starred = std::exchange(starred_, false);
        if (row.action == RtfAction::binary)
            return tokens_.skip(static_cast<std::size_t>(std::max(0, token.number)));
        if (row.action == RtfAction::unicodeAlternative)
            return followAlternative();
        if (group().destination == Destination::skipped)
            return;
        if (starred && row.action != RtfAction::follow)
            return divert(Destination::skipped);
        if (row.action <= RtfAction::gap)
            return textWord(row);
        if (row.action <= RtfAction::unicodeSkip)
            return formatWord(row, token);
        tableWord(row, token);
    }

    void textWord(const RtfWord& row)
    {
        if (row.action == RtfAction::skip)
            divert(Destination::skipped);
        else if (row.action == RtfAction::character)
            character(row.value);
        else if (row.action == RtfAction::lineBreak || row.action == RtfAction::gap)
            part(row.action);
    }

    void formatWord(const RtfWord& row, const RtfToken& token)
    {
        switch (row.action) {
        case RtfAction::unicode:
            return unicode(token.numberOr(0));
        case RtfAction::unicodeSkip:
            group().unicodeSkip = static_cast<std::uint8_t>(std::clamp(token.numberOr(1), 0, 255));
            return;
        case RtfAction::font:
            return font(token.numberOr(0));
        case RtfAction::defaultFont:
            defaultFont_ = token.numberOr(0);
            return;
        case RtfAction::plain:
            return format(0, false);
        case RtfAction::hidden:
            return format(group().codePage, token.numberOr(1) != 0);
        default:
            flush();
            documentPage_ = row.action == RtfAction::codePage ? row.value : token.numberOr(latinPage);
        }
    }

    void tableWord(const RtfWord& row, const RtfToken& token)
    {
        const Destination destination = group().destination;
        if (row.action == RtfAction::fontTable)
            divert(Destination::fontTable);
        else if (row.action == RtfAction::info)
            divert(Destination::info);
        else if (row.action == RtfAction::alternatives)
            beginAlternatives();
        else if (destination == Destination::fontTable)
            fontWord(row, token);
        else if (destination == Destination::info)
            infoWord(row, token);
        else if (destination == Destination::infoDate && row.action == RtfAction::datePart)
            datePart(row.name, token.numberOr(0));
    }

    void divert(Destination destination)
    {
        flush();
        group().destination = destination;
    }

    void beginAlternatives()
    {
        group().alternative = group().destination;
        divert(Destination::skipped);
    }

    void followAlternative()
    {
        flush();
        group().destination = std::exchange(group().alternative, Destination::skipped);
    }

    void format(int codePage, bool hidden)
    {
        if (codePage != group().codePage || hidden != group().hidden)
            flush();
        group().codePage = codePage;
        group().hidden = hidden;
    }

    void unicode(int number)
    {
        flush();
        const auto unit = static_cast<char16_t>(number);
        emit({&unit, 1});
        skipNext_ = group().unicodeSkip;
    }

    void font(int number)
    {
        if (group().destination == Destination::fontTable)
            definedFont_ = number;
        else
            format(pageOfFont(number), group().hidden);
    }

    void fontWord(const RtfWord& row, const RtfToken& token)
    {
        if (row.action == RtfAction::fontCharset)
            fontPages_[definedFont_] = codePageOfFontCharset(token.numberOr(0));
        else if (row.action == RtfAction::fontCodePage)
            fontPages_[definedFont_] = token.numberOr(0);
    }

    void infoWord(const RtfWord& row, const RtfToken& token)
    {
        if (row.action == RtfAction::infoNumber) {
            if (token.numberOr(0) > 0)
                sink_.property(row.property, RawValue::number(row.type, static_cast<std::uint64_t>(token.number)));
            return;
        }
        infoRow_ = &row;
        collected_.clear();
        date_ = {};
        if (row.action == RtfAction::infoText)
            divert(Destination::infoText);
        else if (row.action == RtfAction::infoDate)
            divert(Destination::infoDate);
    }

    void datePart(std::string_view name, int number)
    {
        const auto positive = static_cast<unsigned>(std::clamp(number, 0, 99));
        if (name == "yr")
            date_.year = number;
        else if (name == "mo")
            date_.month = positive;
        else if (name == "dy")
            date_.day = positive;
        else if (name == "hr")
            date_.hour = number;
        else if (name == "min")
            date_.minute = number;
        else
            date_.second = number;
    }

    void putInfoText()
    {
        if (infoRow_->list)
            sink_.property(infoRow_->property, listOf(collected_, u";,"));
        else
            sink_.property(infoRow_->property, RawValue::text(collapsedText(collected_)));
    }

    // The format holds no zone: taken for UTC, so that a document gives the same value everywhere.
    void putInfoDate()
    {
        if (const auto moment = momentOf(date_))
            sink_.property(infoRow_->property, dateValue(*moment));
    }

    int pageOfFont(int number) const
    {
        const auto page = fontPages_.find(number);
        return page != fontPages_.end() ? page->second : 0;
    }

    int codePage()
    {
        if (group().codePage != 0)
            return group().codePage;
        const int page = group().destination == Destination::body ? pageOfFont(defaultFont_) : 0;
        return page != 0 ? page : documentPage_;
    }

    // Decodes what was collected in bytes. Runs of one code page are kept together, since a character may be made of
    // two bytes of which one is written as a letter.
    void flush()
    {
        if (pending_.empty())
            return;
        const bool ascii = std::all_of(pending_.begin(), pending_.end(), [](char byte) { return (byte & 0x80) == 0; });
        if (ascii)
            emit(std::u16string(pending_.begin(), pending_.end()));
        else
            emit(decodeBytes());
        pending_.clear();
    }

    std::u16string decodeBytes()
    {
        auto text = decoding_.decode(asBytes(pending_), charsetOfCodePage(codePage()));
        if (!text)
            text = decoding_.decode(asBytes(pending_), charsetOfCodePage(latinPage));
        return text ? std::move(text).value() : std::u16string();
    }

    void emit(std::u16string_view text)
    {
        if (group().destination == Destination::infoText)
            collected_ += text;
        else if (group().destination == Destination::body && !group().hidden)
            sink_.text(text);
    }

    RtfTokens tokens_;
    const TextDecoding& decoding_;
    DocumentSink& sink_;
    std::vector<Group> groups_ = std::vector<Group>(1);
    std::uint64_t beyond_ = 0;  // open groups that are only counted
    std::string pending_;       // bytes of text that were not decoded yet
    std::size_t skipNext_ = 0;
    bool starred_ = false;
    int documentPage_ = latinPage;
    int defaultFont_ = 0, definedFont_ = 0;
    std::map<int, int> fontPages_;  // ordered: a document chooses the numbers, and could choose those of one bucket
    const RtfWord* infoRow_ = nullptr;
    std::u16string collected_;
    CalendarTime date_;
};

}  // namespace

void putRtf(std::string_view document, const TextDecoding& decoding, DocumentSink& sink)
{
    RtfReader(document, decoding, sink).run();
}

}  // namespace kelvane
