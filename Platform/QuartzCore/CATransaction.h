#pragma once

#include <functional>
#include <memory>

namespace quillbox {

// Groups animations: those that are added to layers between begin() and commit() belong to the transaction, and its
// completion is called once all of them have ended. Transactions nest. Main thread only.
class CATransaction {
public:
    CATransaction() = delete;

    static void begin();
    // Sets the completion of the innermost open transaction. A check refuses the call if none is open.
    static void setCompletionBlock(std::function<void()> completion);
    // A transaction without animations completes at once.
    static void commit();

    // Every running animation of a transaction holds its token; the transaction is completed when the last one releases
    // it.
    class Token;
    // Returns the token of the innermost open transaction, or null.
    static std::shared_ptr<Token> currentToken();
};

} // namespace quillbox
