#pragma once

#include "Check.h"

namespace quillbox {

// An object that can be the target or the sender of an action.
class NSObject {
public:
    NSObject() = default;
    virtual ~NSObject() = default;
    NSObject(const NSObject&) = delete;
    NSObject& operator=(const NSObject&) = delete;
};

// An operation that an item can send: the name that dumps show, and the member function that it stands for. Selectors
// are constants; items point to them, and they are compared by address.
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

// Makes the selector of a member function `void action(Sender* sender)`. A sender of another type is passed as null; a
// target of another type is a bug and stops the program.
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
