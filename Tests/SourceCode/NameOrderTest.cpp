#include "NameOrder.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    struct ArticleCase {
        const char* name;
        const char* title;
        const char* key;
    };

    class Articles : public testing::TestWithParam<ArticleCase> { };

    TEST_P(Articles, DoNotCount)
    {
        EXPECT_EQ(titleWithoutArticle(GetParam().title), GetParam().key);
    }

    INSTANTIATE_TEST_SUITE_P(
        Titles, Articles,
        testing::Values(ArticleCase { "the", "The Zoo", "Zoo" }, ArticleCase { "an", "An apple", "apple" },
                        ArticleCase { "a", "a b", "b" }, ArticleCase { "upperCase", "THE END", "END" },
                        ArticleCase { "partOfAWord", "Theory", "Theory" }, ArticleCase { "alone", "A", "A" },
                        ArticleCase { "aloneWithSpace", "The  ", "The  " },
                        ArticleCase { "oneOnly", "The a Day", "a Day" },
                        ArticleCase { "unicodeSpace", "The\u00A0\u2003Zoo", "Zoo" },
                        ArticleCase { "lineFeed", "An\nApple", "Apple" },
                        ArticleCase { "curlyQuote", "\u201CQuoted\u201D name", "Quoted\u201D name" },
                        ArticleCase { "singleCurly", "\u2018Hello", "Hello" },
                        ArticleCase { "articleThenQuote", "The 'Hello'", "Hello'" },
                        ArticleCase { "quoteThenArticle", "'The Hello'", "The Hello'" },
                        ArticleCase { "oneQuoteOnly", "''Hello", "'Hello" },
                        ArticleCase { "quoteWithSpace", "\"  Hello", "Hello" },
                        ArticleCase { "quoteAlone", "\"", "\"" }, ArticleCase { "closingQuote", "\u201DX", "\u201DX" },
                        ArticleCase { "empty", "", "" }),
        [](const auto& test) { return std::string(test.param.name); });

    TEST(NameOrder, EqualNamesKeepTheirOrder)
    {
        NameOrder order(6);
        for (const char* name : { "file10", "apple", "File9", "Apple", "file09", "APPLE" })
            order.add(name);
        EXPECT_EQ(order.sortedPositions(), (std::vector<std::uint32_t> { 1, 3, 5, 2, 4, 0 }));
    }

} // namespace

} // namespace quillbox
