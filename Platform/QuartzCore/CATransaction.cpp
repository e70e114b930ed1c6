#include "CATransaction.h"

#include "Check.h"

#include <vector>

namespace quillbox {

class CATransaction::Token {
public:
    Token() = default;
    Token(const Token&) = delete;
    Token& operator=(const Token&) = delete;
    ~Token()
    {
        if (completion)
            completion();
    }

    std::function<void()> completion;
};

namespace {
    std::vector<std::shared_ptr<CATransaction::Token>>& openTransactions()
    {
        static std::vector<std::shared_ptr<CATransaction::Token>> stack;
        return stack;
    }
} // namespace

void CATransaction::begin()
{
    openTransactions().push_back(std::make_shared<Token>());
}

void CATransaction::setCompletionBlock(std::function<void()> completion)
{
    QB_CHECK(!openTransactions().empty());
    openTransactions().back()->completion = std::move(completion);
}

void CATransaction::commit()
{
    QB_CHECK(!openTransactions().empty());
    // The transaction is released after it left the stack, because its completion may begin another one.
    const std::shared_ptr<Token> ended = std::move(openTransactions().back());
    openTransactions().pop_back();
}

std::shared_ptr<CATransaction::Token> CATransaction::currentToken()
{
    return openTransactions().empty() ? nullptr : openTransactions().back();
}

} // namespace quillbox
