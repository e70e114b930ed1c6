#pragma once

#include "Clock.h"
#include "Installed.h"

#include <functional>
#include <map>
#include <memory>

namespace quillbox {

// A clock whose hands a test moves. It is the installed clock for as long as it lives.
class ManualClock final : public Clock {
public:
    explicit ManualClock(Date start = Date::sinceUnixEpoch(1700000000)) : now_(start) { }

    Date now() const override { return now_; }
    std::chrono::milliseconds uptime() const override { return uptime_; }
    std::unique_ptr<Timer> after(std::chrono::milliseconds delay, std::function<void()> action) override;

    // Moves both the date and the uptime on, making the calls that fall due on the way, in their order.
    void advance(std::chrono::milliseconds time);
    std::size_t pendingCount() const;

private:
    const Installed<Clock> installed_ { *this };
    Date now_;
    std::chrono::milliseconds uptime_ { 0 };
    std::multimap<std::chrono::milliseconds, std::weak_ptr<std::function<void()>>> pending_;
};

} // namespace quillbox
