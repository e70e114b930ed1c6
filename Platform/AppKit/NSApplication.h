#pragma once

#include "NSObject.h"

#include <functional>
#include <memory>
#include <vector>

namespace quillbox {

class Desktop;

class NSApplicationDelegate {
public:
    virtual ~NSApplicationDelegate() = default;
    virtual void applicationDidFinishLaunching() = 0;
    virtual void applicationWillTerminate() = 0;
};

// The running application: its main loop, its delegate and the sending of actions. The one of the process
// is shared(). Settings that were changed are written when the outermost event or action ends.
class NSApplication {
public:
    static NSApplication& shared();

    // The desktop that is Installed. Stops the program where none is: without a desktop nothing may be shown.
    Desktop& desktop();

    void setDelegate(std::shared_ptr<NSApplicationDelegate> delegate) { delegate_ = std::move(delegate); }

    // Tells the delegate that launching has finished, then runs the desktop's loop. Returns the exit code.
    int run();
    // Writes the settings, tells the delegate and stops the loop.
    void terminate(NSObject* sender);
    void activate(bool ignoringOtherApps);

    // Performs the action on its target with the sender; false where there is no action or the target is
    // gone. The sender is held until the action ends.
    bool sendAction(const Selector* action, const std::shared_ptr<NSObject>& target, std::shared_ptr<NSObject> sender);

    // Lets go of the object when the outermost event has ended; at once where none is running. An event may still
    // be at work in an object that it closes.
    void releaseAfterEvent(std::shared_ptr<void> object);

    // One event of the display or one call from outside. It is opened where these enter the program and nowhere
    // else; what an event calls need not know of it. At the end of the outermost one the user defaults are written.
    class EventScope {
    public:
        EventScope();
        ~EventScope();
        EventScope(const EventScope&) = delete;
        EventScope& operator=(const EventScope&) = delete;
    };

private:
    std::shared_ptr<NSApplicationDelegate> delegate_;
    int eventDepth_ = 0;
    std::vector<std::shared_ptr<void>> toRelease_;
};

} // namespace quillbox
