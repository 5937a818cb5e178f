// Success-or-error values: how everything that can fail in Kelvane answers.
#pragma once

#include <cassert>
#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace kelvane {

// What went wrong, in terms that the engine decides by. The operating system's own code travels along for messages.
enum class ErrorKind {
    notFound,      // no such file, folder, stream or entry
    accessDenied,  // exists, but may not be read
    wrongType,     // not the kind of file that the operation is for (a folder, a device, ...)
    exists,        // something of this name is there already
    changed,       // the file is no longer the one that was seen
    tooManyOpen,   // handles ran out; trying again later may work
    notSupported,  // this system, file system or archive format cannot do it
    invalid,       // damaged or malformed data or argument
    cancelled,     // the person stopped the work
    io,            // any other failure of the device or the operating system
};

// An error. `detail` is the system's or the library's own text in UTF-8 and never names the file: the caller knows it.
struct Error {
    ErrorKind kind = ErrorKind::io;
    int systemCode = 0;  // errno or GetLastError; 0 when none applies
    std::string detail;
};

// For what cannot be meant, or cannot be read as what it should be; the detail says why.
[[nodiscard]] inline Error invalid(std::string detail)
{
    return {ErrorKind::invalid, 0, std::move(detail)};
}

// Either a T or an Error. Asking for the wrong one is a programming mistake and asserts.
template <class T>
class [[nodiscard]] Result {
public:
    Result(T value) : state_(std::in_place_index<0>, std::move(value)) {}
    Result(Error error) : state_(std::in_place_index<1>, std::move(error)) {}

    [[nodiscard]] bool ok() const { return state_.index() == 0; }
    explicit operator bool() const { return ok(); }

    [[nodiscard]] T& value() & { return std::get<0>(state_); }
    [[nodiscard]] const T& value() const& { return std::get<0>(state_); }
    [[nodiscard]] T&& value() && { return std::get<0>(std::move(state_)); }
    [[nodiscard]] const Error& error() const { return std::get<1>(state_); }

    T& operator*() & { return value(); }
    const T& operator*() const& { return value(); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }

private:
    std::variant<T, Error> state_;
};

// Success, or an Error.
class [[nodiscard]] Status {
public:
    Status() = default;
    Status(Error error) : error_(std::move(error)) {}

    [[nodiscard]] bool ok() const { return !error_.has_value(); }
    explicit operator bool() const { return ok(); }
    [[nodiscard]] const Error& error() const
    {
        assert(error_);
        return *error_;
    }

private:
    std::optional<Error> error_;
};

}  // namespace kelvane
