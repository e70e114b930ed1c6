#pragma once

#include <functional>
#include <map>
#include <memory>
#include <string>

namespace quillbox {

// Sees to it that one Quillbox runs per desktop: asks for the application's name on the session bus, and
// answers org.freedesktop.Application there. main asks it before anything is loaded; a process that does
// not get the name has nothing to load. Losing the name or the bus later changes nothing; when the bus comes
// back, it takes the name again where nobody else has it.
class SingleInstance {
public:
    // What the process was started with. Taken first of all, before the toolkit clears it.
    struct StartEnvironment {
        // The right to bring a window to the front, which whoever started the process gave it; or empty.
        std::string activationToken;
        // The bus may have started the process in order to deliver a call.
        bool isStartedByBus = false;

        // Takes the bus's mark out of the environment, so that no program started from here inherits it.
        static StartEnvironment take();
    };

    enum class Outcome {
        // This process has the name.
        first,
        // There is no session bus; more than one Quillbox may run.
        unguarded,
        // The Quillbox that runs was told; this process ends with success.
        handedOver,
        // A Quillbox runs but did not answer, or does not know the action; this process ends with a failure.
        notAnswered,
    };

    // Called from the event loop, after the caller has its answer.
    struct Handlers {
        // Quillbox was started again.
        std::function<void()> onActivate;
        // By the action's name.
        std::map<std::string, std::function<void()>> actions;
        // Comes just before the call it belongs to.
        std::function<void(const std::string&)> onActivationToken;
    };

    explicit SingleInstance(StartEnvironment environment);
    ~SingleInstance();
    SingleInstance(const SingleInstance&) = delete;
    SingleInstance& operator=(const SingleInstance&) = delete;

    // Asks for the name, once; waits for the bus, and some seconds at most for the Quillbox that runs, which is asked
    // for its action of that name, or to come forward where the name is empty.
    Outcome claim(const std::string& action = {});

    // Calls that came since claim() wait in the event loop: set before it runs, all of them are handled.
    // The call that made the bus start the process opens nothing where it is a bare activation; none that comes later
    // is taken for it.
    void setHandlers(Handlers handlers);

private:
    class Service;

    StartEnvironment environment_;
    std::unique_ptr<Service> service_;
};

} // namespace quillbox
