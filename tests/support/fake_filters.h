// Filter programs that write what a test says.
#pragma once

#include <map>
#include <string>

#include "platform/filter_programs.h"

namespace kelvane::testing {

class FakeFilters final : public FilterPrograms {
public:
    bool installed(const std::string&) const override { return !missing; }
    Status run(const std::string& program, const std::vector<std::string>&, RandomAccessFile&,
               const OutputSink& sink) override
    {
        if (missing)
            return Error{ErrorKind::notFound, 0, program};
        if (fails)
            return Error{ErrorKind::invalid, 1, program};
        (void)sink(std::as_bytes(std::span(outputs[program])));
        return {};
    }

    bool missing = false, fails = false;
    std::map<std::string, std::string> outputs;  // by the program
};

}  // namespace kelvane::testing
