#include "QtClock.h"

#include <QTimer>

#include <utility>

namespace quillbox {

namespace {

    class QtTimer final : public Clock::Timer {
    public:
        QtTimer(std::chrono::milliseconds delay, std::function<void()> action) : timer_(new QTimer)
        {
            timer_->setSingleShot(true);
            // The action may destroy this object.
            QObject::connect(timer_, &QTimer::timeout, timer_, [action = std::move(action)]() {
                const std::function<void()> held = action;
                held();
            });
            timer_->start(delay);
        }

        ~QtTimer() override
        {
            timer_->stop();
            timer_->deleteLater();
        }

        QtTimer(const QtTimer&) = delete;
        QtTimer& operator=(const QtTimer&) = delete;

    private:
        QTimer* timer_;
    };

} // namespace

Date QtClock::now() const
{
    const std::chrono::duration<double> sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
    return Date::sinceUnixEpoch(sinceEpoch.count());
}

std::chrono::milliseconds QtClock::uptime() const
{
    return std::chrono::duration_cast<std::chrono::milliseconds>(std::chrono::steady_clock::now().time_since_epoch());
}

std::unique_ptr<Clock::Timer> QtClock::after(std::chrono::milliseconds delay, std::function<void()> action)
{
    return std::make_unique<QtTimer>(delay, std::move(action));
}

} // namespace quillbox
