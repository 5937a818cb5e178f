#include "text/mail_parts.h"

#include <algorithm>
#include <array>

#include "base/words.h"

namespace kelvane {
namespace {

constexpr std::size_t deepest = 50;
constexpr std::size_t mostParts = 10'000;

std::string_view withoutTrailingBlanks(std::string_view line)
{
    const std::size_t last = line.find_last_not_of(" \t\r");
    return line.substr(0, last == std::string_view::npos ? 0 : last + 1);
}

MailKind kindOf(std::string_view type, bool bounded)
{
    if (type.starts_with("multipart/") && bounded)
        return type == "multipart/alternative" ? MailKind::alternatives : MailKind::container;
    if (type == "text/html" || type == "application/xhtml+xml")
        return MailKind::html;
    return type.empty() || type == "text" || type == "text/plain" ? MailKind::plain : MailKind::other;
}

// Cuts a body at the boundaries of the parts that are open, innermost first.
class PartWalk {
public:
    std::vector<MailPart> walk(const MailHeader& header, std::string_view body)
    {
        begin(header, 0);
        rest_ = body;
        leafFrom_ = body.data();
        while (!rest_.empty() && parts_.size() < mostParts)
            takeLine();
        endLeaf(body.data() + body.size());
        return std::move(parts_);
    }

private:
    struct Open {
        std::size_t part;
        std::string boundary;
    };

    void takeLine()
    {
        const std::string_view line = rest_.substr(0, rest_.find('\n'));
        rest_.remove_prefix(std::min(line.size() + 1, rest_.size()));
        if (!line.starts_with("--"))
            return;
        const std::string_view mark = withoutTrailingBlanks(line.substr(2));
        for (std::size_t level = open_.size(); level > 0; --level) {
            const std::string& boundary = open_[level - 1].boundary;
            if (!mark.starts_with(boundary))
                continue;
            const std::string_view behind = mark.substr(boundary.size());
            if (behind.empty() || behind == "--")
                return delimiter(level, line.data(), behind.empty());
        }
    }

    void delimiter(std::size_t level, const char* at, bool opens)
    {
        endLeaf(at);
        open_.resize(opens ? level : level - 1);
        if (!opens)
            return;
        const MailHeader header = MailHeader::take(rest_);
        begin(header, open_.back().part);
        leafFrom_ = rest_.data();
    }

    void begin(const MailHeader& header, std::size_t parent)
    {
        const MailValue type = parseMailValue(header.value("content-type"));
        const MailValue disposition = parseMailValue(header.value("content-disposition"));
        const std::string_view boundary = type.parameter("boundary");
        MailPart part;
        part.parent = parent;
        part.kind = kindOf(type.value, !boundary.empty() && open_.size() < deepest);
        part.charset = type.parameter("charset");
        part.encoding = parseMailValue(header.value("content-transfer-encoding")).value;
        part.fileName = disposition.parameter("filename");
        if (part.fileName.empty())
            part.fileName = type.parameter("name");
        part.attachment = disposition.value == "attachment";
        part.flowed = asciiLower(type.parameter("format")) == "flowed";
        const bool holdsParts = part.kind >= MailKind::alternatives;
        if (holdsParts)
            open_.push_back({parts_.size(), std::string(boundary)});
        inLeaf_ = !holdsParts;
        parts_.push_back(std::move(part));
    }

    // The line break before a boundary belongs to it.
    void endLeaf(const char* at)
    {
        if (inLeaf_ && at > leafFrom_) {
            std::string_view body(leafFrom_, static_cast<std::size_t>(at - leafFrom_));
            if (body.ends_with('\n'))
                body.remove_suffix(body.ends_with("\r\n") ? 2 : 1);
            parts_.back().body = body;
        }
        inLeaf_ = false;
    }

    std::vector<MailPart> parts_;
    std::vector<Open> open_;
    std::string_view rest_;
    const char* leafFrom_ = nullptr;
    bool inLeaf_ = false;
};

// What a part offers to a reader: 2 plain text, 1 HTML.
int worthOf(const MailPart& part)
{
    if (part.attachment)
        return 0;
    return part.kind == MailKind::plain ? 2 : part.kind == MailKind::html ? 1 : 0;
}

}  // namespace

std::vector<MailPart> mailParts(const MailHeader& header, std::string_view body)
{
    return PartWalk().walk(header, body);
}

std::vector<bool> readParts(const std::vector<MailPart>& parts)
{
    // Parts stand behind what holds them, so one pass backwards tells what each holds at best.
    std::vector<int> best(parts.size());
    std::vector<std::size_t> chosen(parts.size());
    for (std::size_t i = parts.size(); i-- > 0;) {
        best[i] = std::max(best[i], worthOf(parts[i]));
        const std::size_t parent = parts[i].parent;
        if (i > 0 && best[i] >= best[parent]) {
            best[parent] = best[i];
            chosen[parent] = i;
        }
    }
    std::vector<bool> read(parts.size());
    for (std::size_t i = 0; i < parts.size(); ++i) {
        const std::size_t parent = parts[i].parent;
        const bool passedOver = parts[parent].kind == MailKind::alternatives && chosen[parent] != i;
        read[i] = best[i] > 0 && !parts[i].attachment && (i == 0 || (read[parent] && !passedOver));
    }
    return read;
}

}  // namespace kelvane
