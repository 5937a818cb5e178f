// A crash capture that a test looks at: nothing is written.
#pragma once

#include <atomic>
#include <mutex>
#include <vector>

#include "platform/crash_capture.h"

namespace kelvane::testing {

class FakeCrashCapture final : public CrashCapture {
public:
    Status install(const std::filesystem::path& dump) override
    {
        installed.push_back(dump);
        return {};
    }
    void guardThisThread() override { ++guarded; }
    Status writeNow(const std::filesystem::path& dump) override
    {
        written.push_back(dump);
        return {};
    }

    std::vector<std::filesystem::path> installed;
    std::vector<std::filesystem::path> written;
    std::atomic<int> guarded{0};
};

}  // namespace kelvane::testing
