#include "ManualClock.h"

#include <algorithm>

namespace quillbox {

namespace {

    // Keeps its call pending.
    struct ManualTimer final : Clock::Timer {
        explicit ManualTimer(std::shared_ptr<std::function<void()>> pending) : call(std::move(pending)) { }
        const std::shared_ptr<std::function<void()>> call;
    };

} // namespace

std::unique_ptr<Clock::Timer> ManualClock::after(std::chrono::milliseconds delay, std::function<void()> action)
{
    auto timer = std::make_unique<ManualTimer>(std::make_shared<std::function<void()>>(std::move(action)));
    pending_.emplace(uptime_ + delay, timer->call);
    return timer;
}

void ManualClock::advance(std::chrono::milliseconds time)
{
    const auto end = uptime_ + time;
    const Date endDate = now_.addingSeconds(static_cast<double>(time.count()) / 1000);
    while (!pending_.empty() && pending_.begin()->first <= end) {
        const auto first = pending_.extract(pending_.begin());
        uptime_ = first.key();
        if (const auto call = first.mapped().lock())
            (*call)();
    }
    uptime_ = end;
    now_ = endDate;
}

std::size_t ManualClock::pendingCount() const
{
    return static_cast<std::size_t>(
        std::count_if(pending_.begin(), pending_.end(), [](const auto& entry) { return !entry.second.expired(); }));
}

} // namespace quillbox
