#pragma once

#include <functional>
#include <memory>

namespace quillbox {

// Groups animations: those added to layers between begin() and commit() belong to it, and its completion is
// called once all of them have ended. Transactions nest. Main thread only.
class CATransaction {
public:
    CATransaction() = delete;

    static void begin();
    // Of the innermost open transaction; outside of one this is refused by a check.
    static void setCompletionBlock(std::function<void()> completion);
    // A transaction without animations completes at once.
    static void commit();

    // Held by every running animation of a transaction; the last one that lets go completes it.
    class Token;
    // The innermost open transaction's; null outside of one.
    static std::shared_ptr<Token> currentToken();
};

} // namespace quillbox
