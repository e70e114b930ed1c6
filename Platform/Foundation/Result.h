#pragma once

#include "Check.h"

#include <optional>
#include <string>
#include <utility>
#include <variant>

namespace quillbox {

// What went wrong outside the program: the system's error number (0 where there is none), what was being
// done, and the path it was done to (empty where there is none).
struct Error {
    int code = 0;
    std::string what;
    std::string path;

    // Returns the system's answer alone, such as "Permission denied"; if it gave no number, what was being done.
    std::string reason() const;
    // One line for people: "couldn't open \"/a/b\": Permission denied". The path is made valid UTF-8.
    std::string description() const;

    // Whether the system answered that nothing is there. Any other error leaves open whether something is there.
    bool isNotThere() const;

    static Error fromErrno(int code, std::string what, std::string path = {});

    friend bool operator==(const Error&, const Error&) = default;
};

// The value of an operation that can fail for reasons outside the program, or the error.
template <class T>
class [[nodiscard]] Result {
public:
    Result(T value) : state_(std::in_place_index<0>, std::move(value)) { }
    Result(Error error) : state_(std::in_place_index<1>, std::move(error)) { }

    bool hasValue() const { return state_.index() == 0; }
    explicit operator bool() const { return hasValue(); }

    T& value()
    {
        QB_CHECK(hasValue());
        return *std::get_if<0>(&state_);
    }
    const T& value() const
    {
        QB_CHECK(hasValue());
        return *std::get_if<0>(&state_);
    }
    T& operator*() { return value(); }
    const T& operator*() const { return value(); }
    T* operator->() { return &value(); }
    const T* operator->() const { return &value(); }

    const Error& error() const
    {
        QB_CHECK(!hasValue());
        return *std::get_if<1>(&state_);
    }

private:
    std::variant<T, Error> state_;
};

template <>
class [[nodiscard]] Result<void> {
public:
    Result() = default;
    Result(Error error) : error_(std::move(error)) { }

    bool hasValue() const { return !error_; }
    explicit operator bool() const { return hasValue(); }
    const Error& error() const
    {
        QB_CHECK(error_);
        return *error_;
    }

private:
    std::optional<Error> error_;
};

} // namespace quillbox
