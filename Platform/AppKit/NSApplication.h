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

// The running application: its main loop, its delegate and the sending of actions. shared() is the process's only one.
// Changed settings are written when the outermost event or action ends.
class NSApplication {
public:
    static NSApplication& shared();

    // Returns the desktop that is installed. The program stops if there is none, because nothing can be shown without
    // it.
    Desktop& desktop();

    void setDelegate(std::shared_ptr<NSApplicationDelegate> delegate) { delegate_ = std::move(delegate); }

    // Tells the delegate that launching has finished, then runs the desktop's event loop. Returns the exit code.
    int run();
    // Writes the settings, tells the delegate and stops the event loop.
    void terminate(NSObject* sender);
    void activate(bool ignoringOtherApps);

    // Performs the action on its target. Returns false if there is no action or the target is gone. The sender is kept
    // alive until the action ends.
    bool sendAction(const Selector* action, const std::shared_ptr<NSObject>& target, std::shared_ptr<NSObject> sender);

    // Releases the object when the outermost event has ended, or at once if no event is being handled. It is for
    // objects that an event closes while the event may still be at work in them.
    void releaseAfterEvent(std::shared_ptr<void> object);

    // Stands for one event of the display or one call from another process. It is opened only where these enter the
    // program; the code that an event calls need not know of it. When the outermost one ends, the user defaults are
    // written.
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
