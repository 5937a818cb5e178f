// Port: installed programs that turn a document on their standard input into text on their standard output.
#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "base/result.h"
#include "platform/random_access_file.h"

namespace kelvane {

// Used by one thread at a time.
class FilterPrograms {
public:
    virtual ~FilterPrograms() = default;
    [[nodiscard]] virtual bool installed(const std::string& program) const = 0;
    // Runs it with the file as its standard input; pieces of its output go to the sink, which ends the program by
    // returning false (that is success). notFound when it is not installed, `invalid` with its exit code when it
    // failed, `io` when it did not start, was killed or took too long, which says nothing about the file. No shell is
    // asked; its messages are thrown away. It ends with this process at the latest.
    using OutputSink = std::function<bool(std::span<const std::byte>)>;
    [[nodiscard]] virtual Status run(const std::string& program, const std::vector<std::string>& arguments,
                                     RandomAccessFile& input, const OutputSink& sink) = 0;
};

}  // namespace kelvane
