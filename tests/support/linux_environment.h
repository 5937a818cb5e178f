// A variable of the environment that is set while this object lives.
#pragma once

#include <cstdlib>
#include <optional>
#include <string>
#include <utility>

namespace kelvane::testing {

class WithVariable {
public:
    // Null unsets it.
    WithVariable(std::string name, const char* value) : name_(std::move(name))
    {
        if (const char* before = std::getenv(name_.c_str()))
            before_ = before;
        set(value);
    }
    ~WithVariable() { set(before_ ? before_->c_str() : nullptr); }
    WithVariable(const WithVariable&) = delete;
    WithVariable& operator=(const WithVariable&) = delete;

private:
    void set(const char* value) const
    {
        if (value != nullptr)
            ::setenv(name_.c_str(), value, 1);
        else
            ::unsetenv(name_.c_str());
    }

    std::string name_;
    std::optional<std::string> before_;
};

}  // namespace kelvane::testing
