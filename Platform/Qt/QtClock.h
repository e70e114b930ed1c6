#pragma once

#include "Clock.h"

namespace quillbox {

// The system's time, with calls made by Qt's event loop. A QCoreApplication must exist while calls are pending.
class QtClock final : public Clock {
public:
    Date now() const override;
    std::chrono::milliseconds uptime() const override;
    std::unique_ptr<Timer> after(std::chrono::milliseconds delay, std::function<void()> action) override;
};

} // namespace quillbox
