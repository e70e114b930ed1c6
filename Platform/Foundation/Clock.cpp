#include "Clock.h"

#include "Check.h"
#include "Installed.h"

namespace quillbox {

namespace {

    class SystemClock final : public Clock {
    public:
        Date now() const override
        {
            const std::chrono::duration<double> sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
            return Date::sinceUnixEpoch(sinceEpoch.count());
        }

        std::chrono::milliseconds uptime() const override
        {
            return std::chrono::duration_cast<std::chrono::milliseconds>(
                std::chrono::steady_clock::now().time_since_epoch());
        }

        std::unique_ptr<Timer> after(std::chrono::milliseconds, std::function<void()>) override
        {
            QB_CHECK(!"the system's clock has no event loop to call from");
            return nullptr;
        }
    };

} // namespace

Clock& Clock::current()
{
    static SystemClock systemClock;
    Clock* const installed = Installed<Clock>::current();
    return installed ? *installed : systemClock;
}

} // namespace quillbox
