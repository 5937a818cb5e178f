// A folder with copies, scanned and saved.
#pragma once

#include <gmock/gmock.h>

#include <nlohmann/json.hpp>

#include "console_run.h"
#include "support/paths.h"
#include "support/temp_tree.h"

namespace kelvane::testing {

class SavedScanWorld : public ::testing::Test {
protected:
    [[nodiscard]] std::string file(std::string_view name) const { return tree_.path(name).string(); }

    // Of everything in "in", with its standard output.
    ConsoleRun save(const std::string& name, Arguments more = {}) const
    {
        Arguments arguments = {"scan", "--no-protect", file("in"), "--save", file(name)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runCli(arguments);
    }

    ConsoleRun show(const std::string& name, Arguments more = {}) const
    {
        Arguments arguments = {"show", file(name)};
        arguments.insert(arguments.end(), more.begin(), more.end());
        return runCli(arguments);
    }

    // The text with "/" in paths, and without what stands before a path below "in".
    [[nodiscard]] std::string below(std::string text) const
    {
        const std::string root = makePlatform()->paths().comparable(file("in"));
        for (std::size_t at = 0; (at = text.find(root)) != std::string::npos;)
            text.erase(at, root.size() + 1);
        return posix(native(text));
    }

    TempTree tree_;
};

}  // namespace kelvane::testing
