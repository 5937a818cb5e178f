// Two groups of copies with an order in time, scanned and saved as "one.ikvs".
#pragma once

#include <chrono>

#include "saved_scan_world.h"

namespace kelvane::testing {

// The program's own folders lie in the tree: its journals, its logs, its settings.
class CleanWorld : public SavedScanWorld {
    const std::filesystem::file_time_type now_ = std::filesystem::file_time_type::clock::now();

protected:
    CleanWorld()
    {
        platform_.ownPlaces = FakePlaces(tree_.folder("own"));
        std::filesystem::create_directory(platform_.ownPlaces.temporary);
        for (const char* name : {"in/a/1", "in/b/1", "in/c/1"})
            tree_.write(name, "same");
        for (const char* name : {"in/b/2", "in/c/2"})
            tree_.write(name, "longer");
        setTime("in/a/1", 1);
        setTime("in/b/1", 3);
        setTime("in/c/1", 3);
        setTime("in/b/2", 2);
        setTime("in/c/2", 1);
        (void)save("one.ikvs");
    }

    void setTime(const char* name, int hour) const
    {
        std::filesystem::last_write_time(tree_.path(name), now_ - std::chrono::hours(100 - hour));
    }

    ConsoleRun clean(const Arguments& more, const Surroundings& around = {})
    {
        Arguments arguments = {"clean", file("one.ikvs"), "--sort", "path"};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runCli(arguments, around, platform_);
    }

    QuietPlatform platform_;
};

}  // namespace kelvane::testing
