#include "ManualClock.h"

namespace quillbox {

struct ManualClock::Pending {
    std::function<void()> action;
};

namespace {
    class ManualTimer final : public Clock::Timer {
    public:
        explicit ManualTimer(std::shared_ptr<void> pending) : pending_(std::move(pending)) { }

    private:
        std::shared_ptr<void> pending_;
    };
} // namespace

ManualClock::ManualClock(Date start) : now_(start) { }

std::unique_ptr<Clock::Timer> ManualClock::after(std::chrono::milliseconds delay, std::function<void()> action)
{
    auto pending = std::make_shared<Pending>(Pending { std::move(action) });
    pending_.emplace(uptime_ + delay, pending);
    return std::make_unique<ManualTimer>(std::move(pending));
}

void ManualClock::advance(std::chrono::milliseconds time)
{
    const auto end = uptime_ + time;
    const Date endDate = now_.addingSeconds(static_cast<double>(time.count()) / 1000);
    while (!pending_.empty() && pending_.begin()->first <= end) {
        const auto due = pending_.begin()->first;
        const std::shared_ptr<Pending> pending = pending_.begin()->second.lock();
        pending_.erase(pending_.begin());
        uptime_ = due;
        if (pending)
            pending->action();
    }
    uptime_ = end;
    now_ = endDate;
}

std::size_t ManualClock::pendingCount() const
{
    std::size_t count = 0;
    for (const auto& [due, pending] : pending_)
        count += pending.expired() ? 0 : 1;
    return count;
}

} // namespace quillbox
