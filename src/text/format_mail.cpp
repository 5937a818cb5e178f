#include "text/format_mail.h"

#include <algorithm>
#include <array>

#include "base/utf.h"
#include "text/document_values.h"
#include "text/html_text.h"
#include "text/mail_encodings.h"
#include "text/mail_headers.h"
#include "text/mail_parts.h"
#include "text/stream_reading.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

constexpr std::uint64_t variantTrue = 0xFFFF;

// Fields that programs put into messages, and those that people write above a text as well.
constexpr std::array programFields = {std::string_view("received"),     std::string_view("return-path"),
                                      std::string_view("message-id"),   std::string_view("mime-version"),
                                      std::string_view("delivered-to"), std::string_view("newsgroups")};
constexpr std::array usualFields = {std::string_view("from"),     std::string_view("to"),
                                    std::string_view("cc"),       std::string_view("subject"),
                                    std::string_view("date"),     std::string_view("sender"),
                                    std::string_view("reply-to"), std::string_view("content-type")};

template <std::size_t Size>
std::size_t countOf(const MailHeader& header, const std::array<std::string_view, Size>& names)
{
    return static_cast<std::size_t>(std::count_if(
        names.begin(), names.end(), [&header](std::string_view name) { return !header.value(name).empty(); }));
}

// Three of the usual fields above a text may be a printed message; fewer are somebody's notes.
bool recognisesMail(std::span<const std::byte> head)
{
    std::string_view text = asCharacters(head);
    const MailHeader header = MailHeader::take(text);
    const std::size_t byProgram = countOf(header, programFields);
    return byProgram + countOf(header, usualFields) >= (byProgram > 0 ? 2u : 3u);
}

void putAddresses(std::string_view value, const TextDecoding& decoding, std::string_view field, DocumentSink& sink)
{
    std::vector<std::u16string> names, addresses;
    for (MailAddress& address : mailAddresses(value, decoding)) {
        names.push_back(std::move(address.name));
        addresses.push_back(std::move(address.address));
    }
    const std::string prefix = "System.Message." + std::string(field);
    if (field == "From")
        sink.property("System.Author", names);
    sink.property(prefix + "Name", std::move(names));
    sink.property(prefix + "Address", std::move(addresses));
}

void putDate(std::optional<FileTime> date, std::string_view name, DocumentSink& sink)
{
    if (date)
        sink.property(name, dateValue(*date));
}

void putHeader(const MailHeader& header, const TextDecoding& decoding, DocumentSink& sink)
{
    sink.property("System.Subject", RawValue::text(mailText(header.value("subject"), decoding)));
    sink.property("System.Keywords", listOf(mailText(header.value("keywords"), decoding), u",;"));
    putAddresses(header.value("from"), decoding, "From", sink);
    putAddresses(header.value("to"), decoding, "To", sink);
    putAddresses(header.value("cc"), decoding, "Cc", sink);
    putDate(mailDate(header.value("date")), "System.Message.DateSent", sink);
    // Each station adds its own above the others; the time stands behind the last semicolon.
    const std::string_view received = header.value("received");
    if (const std::size_t at = received.rfind(';'); at != std::string_view::npos)
        putDate(mailDate(received.substr(at + 1)), "System.Message.DateReceived", sink);
}

// Lines as paragraphs: what parts them in the other form of the same message is not known either.
void putLines(std::u16string_view text, bool flowed, DocumentSink& sink)
{
    while (!text.empty() && sink.wantsMore()) {
        const std::size_t end = text.find(u'\n');
        std::u16string_view line = text.substr(0, end);
        text.remove_prefix(end == std::u16string_view::npos ? text.size() : end + 1);
        if (line.ends_with(u'\r'))
            line.remove_suffix(1);
        const bool goesOn = flowed && line.ends_with(u' ') && line != u"-- ";
        const std::size_t last = line.find_last_not_of(u" \t");
        sink.text(line.substr(0, last == std::u16string_view::npos ? 0 : last + 1));
        if (goesOn)
            sink.gap();
        else
            sink.lineBreak();
    }
}

void putPart(const MailPart& part, const TextDecoding& decoding, DocumentSink& sink)
{
    const std::string bytes = decodeTransfer(part.body, part.encoding);
    sink.lineBreak();
    if (part.kind == MailKind::html) {
        const std::string charset = part.charset.empty() ? declaredMarkupCharset(bytes) : part.charset;
        putHtmlText(decodeText(asBytes(bytes), decoding, charset).text, sink, false);
    } else if (part.kind == MailKind::plain) {
        putLines(decodeText(asBytes(bytes), decoding, part.charset).text, part.flowed, sink);
    }
}

void putAttachments(const std::vector<MailPart>& parts, const TextDecoding& decoding, DocumentSink& sink)
{
    std::vector<std::u16string> names;
    for (const MailPart& part : parts) {
        if (part.attachment && !part.fileName.empty())
            names.push_back(mailText(part.fileName, decoding));
    }
    const bool any = std::any_of(parts.begin(), parts.end(), [](const MailPart& part) { return part.attachment; });
    sink.property("System.Message.AttachmentNames", std::move(names));
    sink.property("System.Message.HasAttachments", RawValue::number(VarType::boolean, any ? variantTrue : 0));
}

ReadOutcome readMail(RandomAccessFile& file, const DocumentServices& services, DocumentSink& sink)
{
    const auto bytes = readBeginning(file, services.options.largestStream);
    if (!bytes)
        return unreadable(bytes.error());
    std::string_view body = asCharacters(*bytes);
    const MailHeader header = MailHeader::take(body);
    if (header.empty() && !body.empty() && !looksLikeText(asBytes(body.substr(0, 4096))))
        return {TextOutcome::damaged, {}, {}};
    putHeader(header, services.decoding, sink);
    const std::vector<MailPart> parts = mailParts(header, body);
    putAttachments(parts, services.decoding, sink);
    const std::vector<bool> read = readParts(parts);
    for (std::size_t i = 0; i < parts.size() && sink.wantsMore(); ++i) {
        if (read[i])
            putPart(parts[i], services.decoding, sink);
    }
    if (bytes->size() < file.size())
        sink.leavesMore();
    return {};
}

}  // namespace

const DocumentFormat mailFormat = {
    .name = "mail", .masks = "eml,nws,mht,mhtml", .textual = true, .recognises = recognisesMail, .read = readMail};

}  // namespace kelvane
