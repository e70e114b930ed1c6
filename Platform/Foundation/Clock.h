#pragma once

#include "Date.h"

#include <chrono>
#include <functional>
#include <memory>

namespace quillbox {

// The one source of time: it tells the date and calls back after a delay. The application installs the
// display's clock; tests install one whose hands they move themselves. Main thread only.
class Clock {
public:
    // A pending call. Destroying it cancels the call; destroying it after the call is harmless.
    class Timer {
    public:
        virtual ~Timer() = default;
    };

    virtual ~Clock() = default;

    virtual Date now() const = 0;
    // A time that never jumps, for measuring durations; only differences have a meaning.
    virtual std::chrono::milliseconds uptime() const = 0;
    // Calls `action` once, after `delay`, from the event loop.
    [[nodiscard]] virtual std::unique_ptr<Timer> after(std::chrono::milliseconds delay,
                                                       std::function<void()> action) = 0;

    // Returns the clock that is installed, otherwise the system's. A check refuses the after() of the system's, because
    // there is no event loop that could call back.
    static Clock& current();
};

} // namespace quillbox
