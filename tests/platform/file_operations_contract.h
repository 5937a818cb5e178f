// A trash to test with that is nobody's, and a sink that remembers what it hears.
#pragma once

#include <functional>
#include <vector>

#include "platform/platform.h"
#include "support/own_trash.h"
#include "support/paths.h"
#include "support/temp_tree.h"

namespace kelvane::testing {

struct TrashWorld {
    TempTree tree;
    OwnTrash trash{tree.path("trash of the tests")};
    std::unique_ptr<Platform> platform = makePlatform();
};

class RecordingSink final : public RemovalSink {
public:
    std::function<bool(std::size_t)> allow;
    std::function<Status(const std::filesystem::path&)> place;
    std::function<void(std::size_t)> ended;
    std::vector<std::filesystem::path> places;
    std::vector<std::size_t> heard;
    std::vector<RemovalOutcome> outcomes;

    bool before(std::size_t item) override { return !allow || allow(item); }
    Status placing(std::size_t /*item*/, const std::filesystem::path& trashed) override
    {
        places.push_back(trashed);
        return place ? place(trashed) : Status();
    }
    void after(std::size_t item, const RemovalOutcome& outcome) override
    {
        heard.push_back(item);
        outcomes.push_back(outcome);
        if (ended)
            ended(item);
    }
};

}  // namespace kelvane::testing
