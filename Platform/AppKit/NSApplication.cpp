#include "NSApplication.h"

#include "Desktop.h"
#include "Installed.h"
#include "MountInquiry.h"
#include "UserDefaults.h"

#include <utility>

namespace quillbox {

NSApplication& NSApplication::shared()
{
    static NSApplication application;
    return application;
}

Desktop& NSApplication::desktop()
{
    Desktop* const installed = Installed<Desktop>::current();
    QB_CHECK(installed);
    return *installed;
}

int NSApplication::run()
{
    {
        const EventScope event;
        if (delegate_)
            delegate_->applicationDidFinishLaunching();
    }
    return desktop().run();
}

void NSApplication::terminate(NSObject*)
{
    // The failure handler is told of a failure, so that the delegate can show it. The old file is still there then.
    static_cast<void>(UserDefaults::standard().synchronize());
    if (delegate_)
        delegate_->applicationWillTerminate();
    desktop().stop();
}

void NSApplication::activate(bool)
{
    desktop().activate();
}

bool NSApplication::sendAction(const Selector* action, const std::shared_ptr<NSObject>& target,
                               std::shared_ptr<NSObject> sender)
{
    if (!action || !target)
        return false;
    MountInquiry::beginOpening();
    action->perform(*target, sender.get());
    return true;
}

void NSApplication::releaseAfterEvent(std::shared_ptr<void> object)
{
    if (eventDepth_ > 0)
        toRelease_.push_back(std::move(object));
}

NSApplication::EventScope::EventScope()
{
    if (NSApplication::shared().eventDepth_++ == 0)
        MountInquiry::continueOpening();
}

NSApplication::EventScope::~EventScope()
{
    int& depth = NSApplication::shared().eventDepth_;
    // The settings are written while still inside the event, because an alert about a failed write handles events of
    // its own.
    if (depth == 1)
        static_cast<void>(UserDefaults::standard().synchronize());
    --depth;
    if (depth == 0)
        std::exchange(NSApplication::shared().toRelease_, {}).clear();
}

} // namespace quillbox
