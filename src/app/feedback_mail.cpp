#include "app/feedback_mail.h"

#include <utility>

#include "app/mail_link.h"
#include "app/makers.h"
#include "app/system_description.h"
#include "app/version_info.h"
#include "base/text_table.h"
#include "base/utf.h"

namespace kelvane {
namespace {

constexpr std::chrono::milliseconds patienceWithWindow{1'000};

std::u16string withCrLf(std::u16string_view text)
{
    std::u16string lines;
    for (const char16_t c : text) {
        if (c == u'\n')
            lines += u'\r';
        lines += c;
    }
    return lines;
}

bool isFile(FileSystem& files, const std::filesystem::path& path)
{
    const auto details = files.details(path, Links::asThemselves);
    return details.ok() && details->kind == FileKind::regular;
}

}  // namespace

std::filesystem::path dumpPath(const Places& places)
{
    return places.temporaryFolder() / ("KelVa_minidump" + toUtf8(CAppVersionInfo::versionText()) + ".mdmp");
}

std::u16string configurationBlock(const SystemVersion& system)
{
    return u"YOUR CONFIGURATION\r\nWINVER: " + systemDescription(system) + u"\r\nVersion: " +
           CAppVersionInfo::versionText() + u"\r\n-----------\r\n\r\n";
}

FeedbackMail::FeedbackMail(MailPorts ports, Questions& questions, std::function<void()> nothingWorked)
    : ports_(ports), questions_(questions), nothingWorked_(std::move(nothingWorked))
{
}

void FeedbackMail::sendFeedback()
{
    send({std::u16string(makers::supportMail()), u"kelvane feedback", bodyWith(text(TextId::feedbackRequest)), {}});
}

void FeedbackMail::sendCrash(WindowProbe& windows)
{
    const std::filesystem::path dump = dumpPath(ports_.places);
    const bool hung = windows.someWindowHangs(patienceWithWindow);
    // Whether that worked shows in the file that is there or not.
    if (hung)
        static_cast<void>(ports_.crashes.writeNow(dump));
    if (!isFile(ports_.files, dump))
        return questions_.showStatus(text(TextId::noCrashDump));
    const std::u16string subject = hung ? u"kelvane crash information (hung)" : u"kelvane crash information";
    send({std::u16string(makers::supportMail()), subject, bodyWith(text(TextId::crashDetailsRequest)), dump});
}

std::u16string FeedbackMail::bodyWith(std::u16string_view request) const
{
    return configurationBlock(ports_.system.version()) + withCrLf(request);
}

void FeedbackMail::send(const MailDraft& draft)
{
    if (ports_.processes.composeMail(draft) != MailOutcome::unavailable)
        return;
    if (!ports_.processes.openLink(mailLink(draft)).ok() && nothingWorked_)
        nothingWorked_();
}

}  // namespace kelvane
