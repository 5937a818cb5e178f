#include "text/format_mail.h"

#include <gtest/gtest.h>

#include "support/document_world.h"

namespace kelvane {
namespace {

using testing::DocumentWorld;
using testing::valueText;

ExtractedDocument read(std::string message)
{
    return DocumentWorld().extract("a.eml", std::move(message));
}

std::string textOf(std::string message)
{
    return toUtf8(read(std::move(message)).text);
}

constexpr std::string_view head = "From: a@b\nTo: c@d\nSubject: s\nMIME-Version: 1.0\n";

TEST(Mail, GivesTheBodyThatAPersonReads)
{
    struct Case {
        const char* name;
        std::string rest, text;
    };
    const std::vector<Case> cases = {
        {"plain", "\nOne\r\n\r\nTwo  \n", "One\nTwo"},
        {"quoted-printable",
         "Content-Type: text/plain; charset=iso-8859-1\nContent-Transfer-Encoding: Quoted-Printable\n\n"
         "caf=E9 a=\n b  \n=zz =4",
         "café a b\n=zz =4"},
        {"base64, broken up and cut off",
         "Content-Type: text/plain; charset=\"UTF-8\"\nContent-Transfer-Encoding: base64\n"
         "\nR3L!D\n\n \\vMOf*ZSBhbiBhbGw",
         "Grüße an all"},
        {"undeclared charset", "\nplain caf\xC3\xA9", "plain café"},
        {"a charset that nobody looked at", "Content-Type: text/plain; charset=us-ascii\n\ncaf\xC3\xA9", "café"},
        {"flowed", "Content-Type: text/plain; format=flowed\n\nOne long \nline.\nAnother.", "One long line.\nAnother."},
        {"html alone", "Content-Type: text/html; charset=windows-1251\n\n<p>\xCF<p>x", "П\nx"},
        {"alternatives",
         "Content-Type: multipart/alternative; boundary=\"=_x\"\n\npreamble\n--=_x\nContent-Type: text/html"
         "\n\n<b>html</b>\n--=_x\nContent-Type: text/plain\n\nplain\n--=_x--\nepilogue",
         "plain"},
        {"alternatives in a mixture, with attachments",
         "Content-Type: multipart/mixed;\n boundary=A\n\n--A\nContent-Type: multipart/alternative; boundary=B\n\n"
         "--B\nContent-Type: text/plain\n\nplain\n--B\nContent-Type: multipart/related; boundary=C\n\n--C\n"
         "Content-Type: text/html\n\nhtml\n--C\nContent-Type: image/png\n\nPNG\n--C--\n--B--\n--A\n"
         "Content-Type: text/plain; name=n.txt\nContent-Disposition: ATTACHMENT; "
         "filename*=utf-8''n%C3%A4.txt\n\nattached"
         "\n--A\n\nsigned\n--A--",
         "plain\nsigned"},
        {"boundaries that begin alike", "Content-Type: multipart/mixed; boundary=A\n\n--A\n\n--AB\none\n--A \n\ntwo",
         "--AB\none\ntwo"},
        {"an outer boundary ends inner parts",
         "Content-Type: multipart/mixed; boundary=A\n\n--A\nContent-Type: "
         "multipart/mixed; boundary=B\n\n--B\n\none\n--A\n\ntwo\n--B\n\nthree",
         "one\ntwo\n--B\nthree"},
        {"no boundary", "Content-Type: multipart/mixed\n\n--A\n\none", ""},
        {"a header that never ends", "X-Long: y\n\tz", ""},
    };
    for (const Case& each : cases)
        EXPECT_EQ(textOf(std::string(head) + each.rest), each.text) << each.name;
}

TEST(Mail, HeaderBecomesProperties)
{
    const ExtractedDocument document = read(
        "Received: from x by y; Fri, 21 Nov 1997 15:55:10 +0000\r\n"
        "From: =?utf-8?Q?Ad=C3?= =?UTF-8?B?pA==?=, \"Bob, the \\\"Great\\\"\" <bob@x.org>, eve@x.org (Eve (the) E)\r\n"
        "To: Friends: c@d, <e@f>;\r\n"
        "Subject: =?utf-8?B?R3LD?=\r\n =?utf-8?B?vMOfZQ==?= und =?x-unknown?q?mehr_?= =?broken\r\n"
        "Date: Fri, 21 Nov 97 09:55:06 -0600 (CST)\r\nKeywords: one, two\r\n"
        "Content-Type: multipart/mixed; boundary=A\r\n\r\n--A\r\n\r\nbody\r\n--A\r\n"
        "Content-Disposition: attachment; filename*0*=utf-8''%E2%82; filename*1*=%AC; filename*2=.txt\r\n\r\nx");
    EXPECT_EQ(toUtf8(document.text), "body");
    EXPECT_EQ(valueText(document, "System.Subject"), "Grüße und mehr =?broken");
    EXPECT_EQ(valueText(document, "System.Message.FromName"), "Adä|Bob, the \"Great\"|Eve the E");
    EXPECT_EQ(valueText(document, "System.Message.FromAddress"), "Adä|bob@x.org|eve@x.org");
    EXPECT_EQ(valueText(document, "System.Author"), valueText(document, "System.Message.FromName"));
    EXPECT_EQ(valueText(document, "System.Message.ToAddress"), "c@d|e@f");
    EXPECT_EQ(valueText(document, "System.Keywords"), "one|two");
    EXPECT_EQ(valueText(document, "System.Message.DateSent"), std::to_string(fileTimeFromUnix(880'127'706, 0).ticks));
    EXPECT_EQ(valueText(document, "System.Message.DateReceived"),
              std::to_string(fileTimeFromUnix(880'127'710, 0).ticks));
    EXPECT_EQ(valueText(document, "System.Message.AttachmentNames"), "€.txt");
    EXPECT_EQ(valueText(document, "System.Message.HasAttachments"), "65535");
}

// Quadratic work on any of these would not end within the time that a test is given.
TEST(Mail, HostileMessagesTakeNoLongerThanOthers)
{
    std::string nested(head), parts = std::string(head) + "Content-Type: multipart/mixed; boundary=A\n\n";
    for (int i = 0; i < 20'000; ++i)
        nested +=
            "Content-Type: multipart/mixed; boundary=b" + std::to_string(i) + "\n\n--b" + std::to_string(i) + "\n";
    for (int i = 0; i < 300'000; ++i)
        parts += "--A\n\nx\n";
    std::string words = std::string(head.substr(0, head.find("Subject"))) + "Date: x\nSubject: ";
    for (int i = 0; i < 100'000; ++i)
        words += "=?a?b?";
    EXPECT_EQ(read(nested).outcome, TextOutcome::extracted);
    EXPECT_EQ(textOf(parts).substr(0, 5), "x\nx\nx");
    EXPECT_EQ(read(words).outcome, TextOutcome::extracted);
    EXPECT_EQ(read(std::string(head) + std::string(1'000'000, '(')).outcome, TextOutcome::extracted);
}

}  // namespace
}  // namespace kelvane
