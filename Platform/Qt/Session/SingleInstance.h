#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace quillbox {

// Ensures that only one Quillbox runs on a desktop. It asks for the application's name on the session bus and answers
// org.freedesktop.Application there. main() asks it before anything is loaded, and a process that does not get the name
// loads nothing. Losing the name or the bus later has no effect; when the bus returns, the name is taken again unless
// another process has it.
class SingleInstance {
public:
    // How the process was started. It must be taken first, before the toolkit clears it from the environment.
    struct StartEnvironment {
        // The right to bring a window to the front, from whoever started the process; empty if there is none.
        std::string activationToken;
        // Whether the bus may have started the process to deliver a call.
        bool isStartedByBus = false;

        // Also removes the bus's variables from the environment, so that programs started from here don't inherit them.
        static StartEnvironment take();
    };

    enum class Outcome {
        // This process has the name.
        first,
        // There is no session bus, so more than one Quillbox may run.
        unguarded,
        // The running Quillbox was told. This process ends with success.
        handedOver,
        // A Quillbox runs but did not answer, or does not know the action. This process ends with a failure.
        notAnswered,
    };

    // These are called from the event loop, after the caller has its answer.
    struct Handlers {
        // Quillbox was started again.
        std::function<void()> onActivate;
        // The key is the action's name.
        std::map<std::string, std::function<void()>> actions;
        // Called just before the handler of the call to which the token belongs.
        std::function<void(const std::string&)> onActivationToken;
    };

    explicit SingleInstance(StartEnvironment environment);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    // Asks for the name; must be called once. It waits for the bus, and at most some seconds for a running Quillbox,
    // which is asked to perform `action`, or to come forward if that is empty.
    Outcome claim(const std::string& action = {});

    // Calls that arrived after claim() wait in the event loop, so none is lost if this is called before the loop runs.
    // If the bus started the process only to deliver an activation, that call opens nothing; a later call is never
    // mistaken for it.
    void setHandlers(Handlers handlers);

private:
    class Service;

    StartEnvironment environment_;
    std::unique_ptr<Service> service_;
};

} // namespace quillbox
