#include "text/format_subtitles.h"

#include <algorithm>

#include "text/collapsed_text.h"
#include "text/stream_reading.h"
#include "text/subtitle_lines.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

// Takes a line off the front, without white space at its ends.
std::u16string_view takeLine(std::u16string_view& rest)
{
    const std::size_t end = std::min(rest.find(u'\n'), rest.size());
    std::u16string_view line = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    line.remove_prefix(std::min(line.find_first_not_of(u" \t\r"), line.size()));
    const std::size_t last = line.find_last_not_of(u" \t\r");
    return line.substr(0, last == std::u16string_view::npos ? 0 : last + 1);
}

// Puts cues: each on a line of its own, however it was broken up for the screen.
class CueWriter {
public:
    explicit CueWriter(DocumentSink& sink) : sink_(sink), collapsed_(sink) {}

    void line(std::u16string_view written)
    {
        collapsed_.put(spokenText(written));
        sink_.gap();
    }
    void cueEnds() { sink_.lineBreak(); }
    [[nodiscard]] bool wantsMore() const { return sink_.wantsMore(); }

private:
    DocumentSink& sink_;
    CollapsedText collapsed_;
};

// Files whose cues are blocks of lines, or single lines with times in front.
class CueReader {
public:
    CueReader(std::u16string_view document, DocumentSink& sink)
        : rest_(document), webVtt_(document.starts_with(u"WEBVTT")), inNote_(webVtt_), writer_(sink)
    {
    }

    void run()
    {
        while (!rest_.empty() && writer_.wantsMore())
            take(takeLine(rest_));
        putHeld();
    }

private:
    void take(std::u16string_view line)
    {
        if (line.empty()) {
            putHeld();
            writer_.cueEnds();
            inNote_ = false;
            betweenCues_ = true;
            return;
        }
        const bool first = std::exchange(betweenCues_, false);
        inNote_ = inNote_ || (first && webVtt_ && isNote(line));
        if (!inNote_)
            takeText(line, first);
    }

    void takeText(std::u16string_view line, bool first)
    {
        if (isCueTiming(line)) {
            held_ = {};  // its number or name
            writer_.cueEnds();
            return;
        }
        putHeld();
        if (const auto timed = timedLine(line)) {
            writer_.line(*timed);
            writer_.cueEnds();
        } else if (first || line.find_first_not_of(u"0123456789") == std::u16string_view::npos) {
            held_ = line;
        } else {
            writer_.line(line);
        }
    }

    void putHeld()
    {
        if (!held_.empty())
            writer_.line(std::exchange(held_, {}));
    }

    static bool isNote(std::u16string_view line)
    {
        return line == u"STYLE" || line == u"REGION" || line == u"NOTE" || line.starts_with(u"NOTE ");
    }

    std::u16string_view rest_;
    std::u16string_view held_;  // what may turn out to be the number or name of a cue
    const bool webVtt_;
    bool inNote_, betweenCues_ = true;
    CueWriter writer_;
};

bool isScript(std::u16string_view document)
{
    return document.starts_with(u"[Script Info]") || document.find(u"\nDialogue:") != std::u16string_view::npos;
}

// Which column of "Format: Layer, Start, ..., Text" holds the text.
std::size_t textColumn(std::u16string_view columns)
{
    return static_cast<std::size_t>(std::count(columns.begin(), columns.end(), u','));
}

std::u16string_view behindCommas(std::u16string_view line, std::size_t count)
{
    for (std::size_t i = 0; i < count && !line.empty(); ++i)
        line.remove_prefix(std::min(line.find(u','), line.size() - 1) + 1);
    return line;
}

// SubStation Alpha: the text is the last column of an event's line, and may hold commas itself.
void putScript(std::u16string_view rest, DocumentSink& sink)
{
    constexpr std::size_t usualColumn = 9;
    CueWriter writer(sink);
    std::size_t column = usualColumn;
    bool events = false;
    while (!rest.empty() && writer.wantsMore()) {
        std::u16string_view line = takeLine(rest);
        events = line.starts_with(u'[') ? line.starts_with(u"[Events]") : events;
        if (events && line.starts_with(u"Format:"))
            column = textColumn(line);
        if (!line.starts_with(u"Dialogue:"))
            continue;
        writer.line(behindCommas(line, column));
        writer.cueEnds();
    }
}

bool recognisesSubtitles(std::span<const std::byte> head)
{
    const bool marked = markedCharset(head) == "utf-8";
    std::string_view text = asCharacters(head).substr(marked ? 3 : 0);
    if (text.starts_with("WEBVTT") || text.starts_with("[Script Info]"))
        return true;
    // "1", and on the next line "00:00:01,000 --> 00:00:04,000"
    const std::string_view first = text.substr(0, text.find('\n'));
    const bool number = !first.empty() && first.find_first_not_of("0123456789\r") == std::string_view::npos;
    const std::string_view second = text.substr(std::min(first.size() + 1, text.size())).substr(0, 40);
    return number && second.find(" --> ") != std::string_view::npos;
}

ReadOutcome readSubtitles(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    const auto bytes = readBeginning(file, services.options.largestStream);
    if (!bytes)
        return unreadable(bytes.error());
    if (!bytes->empty() && !looksLikeText(std::span(*bytes).first(std::min<std::size_t>(bytes->size(), 4096))))
        return {TextOutcome::damaged, {}, {}};
    const std::u16string text = decodeText(*bytes, services.decoding).text;
    if (isScript(text))
        putScript(text, sink);
    else
        CueReader(text, sink).run();
    if (bytes->size() < file.size())
        sink.leavesMore();
    return {};
}

}  // namespace

const DocumentFormat subtitleFormat = {.name = "subtitles",
                                       .masks = "srt,vtt,webvtt,sub,sbv,ass,ssa,lrc,mpl",
                                       .textual = true,
                                       .recognises = recognisesSubtitles,
                                       .read = readSubtitles};

}  // namespace kelvane
