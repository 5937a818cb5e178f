// Standard output that remembers why it failed.
#pragma once

#include <cstdio>
#include <ostream>
#include <streambuf>
#include <system_error>
#include <vector>

namespace kelvane {

// Buffers, and writes through the C stream without a second buffer. After a failure the stream is bad and nothing
// further is written, so that a reader gets one unbroken beginning of the output.
class OutputBuffer final : public std::streambuf {
public:
    explicit OutputBuffer(std::FILE* file);
    ~OutputBuffer() override;
    [[nodiscard]] std::error_code failure() const { return failure_; }

protected:
    int_type overflow(int_type character) override;
    int sync() override;

private:
    bool drain();

    std::FILE* file_;
    std::vector<char> buffer_;
    std::error_code failure_;
};

// The file is the caller's and outlives the stream.
class OutputStream final : public std::ostream {
public:
    explicit OutputStream(std::FILE* file) : std::ostream(nullptr), buffer_(file) { rdbuf(&buffer_); }
    [[nodiscard]] std::error_code failure() const { return buffer_.failure(); }

private:
    OutputBuffer buffer_;
};

}  // namespace kelvane
