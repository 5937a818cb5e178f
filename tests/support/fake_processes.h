// Other programs that a test makes up: records what was asked for, and answers as it is told.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "platform/processes.h"

namespace kelvane::testing {

class FakeProcesses final : public Processes {
public:
    struct Start {
        std::filesystem::path program;
        std::vector<NativeString> arguments;
    };

    Status start(const std::filesystem::path& program, const std::vector<NativeString>& arguments) override
    {
        started.push_back({program, arguments});
        return answer(startFailure);
    }
    Status startElevated(const std::filesystem::path& program, const std::vector<NativeString>& arguments) override
    {
        startedElevated.push_back({program, arguments});
        return answer(elevatedFailure);
    }
    bool isElevated() const override { return elevated; }
    Status openFile(const std::filesystem::path& file) override
    {
        files.push_back(file);
        return answer(openFailure);
    }
    Status openLink(const std::string& link) override
    {
        links.push_back(link);
        return answer(openFailure);
    }
    MailOutcome composeMail(const MailDraft& draft) override
    {
        mails.push_back(draft);
        return mailOutcome;
    }
    bool isOnline() const override { return online; }
    void restartAfterCrash(const std::vector<NativeString>& arguments) override { restart = arguments; }

    bool elevated = false;
    bool online = true;
    MailOutcome mailOutcome = MailOutcome::handedOver;
    std::optional<Error> startFailure;
    std::optional<Error> elevatedFailure;
    std::optional<Error> openFailure;  // of files and links

    std::vector<Start> started;
    std::vector<Start> startedElevated;
    std::vector<std::filesystem::path> files;
    std::vector<std::string> links;
    std::vector<MailDraft> mails;
    std::optional<std::vector<NativeString>> restart;

private:
    static Status answer(const std::optional<Error>& failure) { return failure ? Status(*failure) : Status(); }
};

}  // namespace kelvane::testing
