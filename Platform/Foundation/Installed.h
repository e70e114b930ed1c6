#pragma once

#include "Check.h"

#include <utility>

namespace quillbox {

// Makes an object the one that the process uses for `Role` (its clock, its desktop, its settings) for as long as this
// guard lives; afterwards the one before it serves again, or none. Guards must end in the reverse order of their
// making, and the object must outlive its guard. Main thread only.
template <class Role>
class Installed {
public:
    explicit Installed(Role& object) : object_(&object), before_(std::exchange(slot(), &object)) { }
    ~Installed()
    {
        QB_CHECK(slot() == object_);
        slot() = before_;
    }
    Installed(const Installed&) = delete;
    Installed& operator=(const Installed&) = delete;

    // Returns null if none is installed.
    static Role* current() { return slot(); }

private:
    static Role*& slot()
    {
        static Role* installed = nullptr;
        return installed;
    }

    Role* object_;
    Role* before_;
};

} // namespace quillbox
