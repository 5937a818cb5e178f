// Encoded words and addresses.
#include <algorithm>
#include <optional>
#include <utility>

#include "base/words.h"
#include "text/document_values.h"
#include "text/mail_encodings.h"
#include "text/mail_headers.h"
#include "text/text_charset.h"

namespace kelvane {
namespace {

// Words are at most 75 characters long by the standard; programs write longer ones.
constexpr std::size_t longestWord = 500;
constexpr std::size_t mostAddresses = 1000;

struct EncodedWord {
    std::string charset;
    std::string bytes;
    std::size_t length = 0;  // as written
};

// "=?charset*language?Q?text?=" at the front (RFC 2047, section 2; RFC 2231, section 5).
std::optional<EncodedWord> encodedWord(std::string_view text)
{
    text = text.substr(0, longestWord);
    if (!text.starts_with("=?"))
        return std::nullopt;
    const std::size_t charsetEnd = text.find('?', 2);
    if (charsetEnd == std::string_view::npos || charsetEnd + 3 > text.size() || text[charsetEnd + 2] != '?')
        return std::nullopt;
    const std::size_t first = charsetEnd + 3;
    const std::size_t end = text.find("?=", first);
    if (end == std::string_view::npos)
        return std::nullopt;
    EncodedWord word;
    word.charset = asciiLower(text.substr(2, text.find_first_of("*?", 2) - 2));
    word.length = end + 2;
    std::string content(text.substr(first, end - first));
    if ((text[charsetEnd + 1] | 0x20) == 'b') {
        word.bytes = decodeBase64(content);
    } else {
        std::replace(content.begin(), content.end(), '_', ' ');
        // A blank at the end is meant here.
        word.bytes = decodeQuotedPrintable(content + "=");
    }
    return word;
}

// Joins the bytes of neighbouring words of one charset, since programs cut within characters.
class WordJoiner {
public:
    WordJoiner(std::string_view value, const TextDecoding& decoding) : value_(value), decoding_(decoding) {}

    std::u16string joined()
    {
        std::string_view rest = value_;
        while (!rest.empty()) {
            if (const auto word = encodedWord(rest)) {
                add(*word);
                rest.remove_prefix(word->length);
                continue;
            }
            const std::size_t end = std::min(rest.find("=?", 1), rest.size());
            addPlain(rest.substr(0, end), end < rest.size() && encodedWord(rest.substr(end)));
            rest.remove_prefix(end);
        }
        flush();
        return std::move(text_);
    }

private:
    void add(const EncodedWord& word)
    {
        if (word.charset != charset_)
            flush();
        charset_ = word.charset;
        bytes_ += word.bytes;
        afterWord_ = true;
    }

    // White space between two words is no text.
    void addPlain(std::string_view plain, bool beforeWord)
    {
        if (afterWord_ && beforeWord && plain.find_first_not_of(" \t") == std::string_view::npos)
            return;
        flush();
        afterWord_ = false;
        const bool ascii = std::all_of(plain.begin(), plain.end(), [](char byte) { return (byte & 0x80) == 0; });
        text_ += ascii ? std::u16string(plain.begin(), plain.end())
                       : decodeText(asBytes(plain), decoding_, unencoded()).text;
    }

    void flush()
    {
        if (!bytes_.empty())
            text_ += decodeText(asBytes(bytes_), decoding_, charset_).text;
        bytes_.clear();
    }

    // The charset of what stands there in bytes, judged once by all of it.
    const std::string& unencoded()
    {
        if (unencoded_.empty())
            unencoded_ = decodeText(asBytes(value_), decoding_).charset;
        return unencoded_;
    }

    std::string_view value_;
    const TextDecoding& decoding_;
    std::u16string text_;
    std::string charset_, bytes_, unencoded_;
    bool afterWord_ = false;
};

// One mailbox, while its characters go by.
struct Mailbox {
    std::string words, address, comment;
};

// Cuts a list of addresses: quoted strings, comments and angle brackets may hold its separators (RFC 5322,
// section 3.4).
class AddressList {
public:
    explicit AddressList(std::string_view written) : written_(written) {}

    std::vector<Mailbox> split()
    {
        for (std::size_t i = 0; i < written_.size() && boxes_.size() < mostAddresses; ++i) {
            if (written_[i] == '\\' && i + 1 < written_.size())
                part() += written_[++i];
            else
                take(written_[i]);
        }
        finish();
        return std::move(boxes_);
    }

private:
    std::string& part() { return comments_ > 0 ? box_.comment : angle_ ? box_.address : box_.words; }

    void take(char byte)
    {
        if (byte == '"' && comments_ == 0)
            quoted_ = !quoted_;
        else if (quoted_)
            part() += byte;
        else if (byte == '(' || (byte == ')' && comments_ > 0))
            comments_ += byte == '(' ? 1 : -1;
        else if (comments_ == 0 && (byte == '<' || byte == '>'))
            angle_ = byte == '<';
        else if (comments_ == 0 && (byte == ',' || byte == ';'))
            finish();
        else if (comments_ == 0 && byte == ':' && !angle_)
            box_ = {};  // the name of a group
        else
            part() += byte;
    }

    void finish()
    {
        if (box_.address.empty())
            box_.address = std::exchange(box_.words, {});
        if (!box_.address.empty() || !box_.words.empty())
            boxes_.push_back(std::move(box_));
        box_ = {};
        angle_ = false;
    }

    std::string_view written_;
    std::vector<Mailbox> boxes_;
    Mailbox box_;
    bool quoted_ = false, angle_ = false;
    int comments_ = 0;
};

}  // namespace

std::u16string mailText(std::string_view value, const TextDecoding& decoding)
{
    return collapsedText(WordJoiner(value, decoding).joined());
}

std::vector<MailAddress> mailAddresses(std::string_view value, const TextDecoding& decoding)
{
    std::vector<MailAddress> addresses;
    for (const Mailbox& box : AddressList(value).split()) {
        MailAddress address{mailText(box.words, decoding), mailText(box.address, decoding)};
        if (address.name.empty())
            address.name = mailText(box.comment, decoding);
        if (address.name.empty())
            address.name = address.address;
        if (!address.address.empty())
            addresses.push_back(std::move(address));
    }
    return addresses;
}

}  // namespace kelvane
