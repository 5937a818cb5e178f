// Windows that nobody sees, for tests of the application core.
#pragma once

#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "app/application_host.h"
#include "app/cx_instance.h"
#include "support/fake_questions.h"

namespace kelvane::testing {

// Closes when it is asked to, unless its host says that the person objects.
class HeadlessHost final : public ApplicationHost {
public:
    Questions& questions() override { return answers; }
    bool initialise() override { return fits; }
    void prepareWindows(const CommandLine& line) override { prepared.push_back(line.flags); }
    void firstWindowIsUp() override { ++firstSteps; }
    void serveHelperRequest(const std::string& request) override { requests.push_back(request); }

    std::unique_ptr<Window> makeWindow(CXInstance& instance) override
    {
        if (!makesWindows)
            return nullptr;
        auto window = std::make_unique<HeadlessWindow>(*this, instance);
        const std::lock_guard lock(mutex_);
        opened_.push_back(instance.shared_from_this());
        changed_.notify_all();
        return window;
    }

    // Waits until so many windows have been opened; gives the latest one.
    std::shared_ptr<CXInstance> awaitWindow(std::size_t count)
    {
        std::unique_lock lock(mutex_);
        changed_.wait_for(lock, std::chrono::minutes(1), [&] { return opened_.size() >= count; });
        return opened_.size() >= count ? opened_[count - 1].lock() : nullptr;
    }

    FakeQuestions answers;
    bool fits = true;
    bool makesWindows = true;
    std::atomic<bool> personObjects{false};
    std::atomic<int> closeRequests{0};
    int firstSteps = 0;
    std::vector<std::uint32_t> prepared;  // the flags that windows were prepared with
    std::vector<std::string> requests;

private:
    class HeadlessWindow final : public Window {
    public:
        HeadlessWindow(HeadlessHost& host, CXInstance& instance) : host_(host), instance_(instance) {}
        void closeRequested() override
        {
            ++host_.closeRequests;
            if (!host_.personObjects)
                instance_.quit();
        }

    private:
        HeadlessHost& host_;
        CXInstance& instance_;
    };

    std::mutex mutex_;
    std::condition_variable changed_;
    std::vector<std::weak_ptr<CXInstance>> opened_;
};

}  // namespace kelvane::testing
