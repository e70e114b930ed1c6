#pragma once

#include "Check.h"

namespace quillbox {

// What can be the target or the sender of an action.
class NSObject {
public:
    NSObject() = default;
    virtual ~NSObject() = default;
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;
};

// An operation that an item can send: its name as people read it in a dump, and the member function it
// stands for. Selectors are constants; items point at them and compare them by address.
struct Selector {
    const char* name;
    void (*perform)(NSObject& target, NSObject* sender);
};

namespace detail {
    template <class Member>
    struct ActionTraits;
    template <class Target, class Sender>
    struct ActionTraits<void (Target::*)(Sender*)> {
        using TargetType = Target;
        using SenderType = Sender;
    };
} // namespace detail

// The selector of a member function `void action(Sender* sender)`. A sender of another type arrives as
// null; a target of another type is a bug and stops the program.
template <auto Member>
constexpr Selector makeSelector(const char* name)
{
    using Traits = detail::ActionTraits<decltype(Member)>;
    return Selector { name, [](NSObject& target, NSObject* sender) {
                         auto* receiver = dynamic_cast<typename Traits::TargetType*>(&target);
                         QB_CHECK(receiver);
                         (receiver->*Member)(dynamic_cast<typename Traits::SenderType*>(sender));
                     } };
}

} // namespace quillbox
