#include "NameOrder.h"

#include <gtest/gtest.h>

namespace quillbox {

namespace {

    TEST(NameOrder, ArticlesAndQuotesDoNotCount)
    {
        struct Case {
            const char* title;
            const char* key;
        };
        for (const Case& c : {
                 Case { "The Zoo", "Zoo" },
                 Case { "An apple", "apple" },
                 Case { "a b", "b" },
                 Case { "THE END", "END" },
                 Case { "Theory", "Theory" },
                 Case { "A", "A" },
                 Case { "The  ", "The  " },
                 Case { "The a Day", "a Day" },
                 Case { "The\u00A0\u2003Zoo", "Zoo" },
                 Case { "An\nApple", "Apple" },
                 Case { "\u201CQuoted\u201D name", "Quoted\u201D name" },
                 Case { "\u2018Hello", "Hello" },
                 Case { "The 'Hello'", "Hello'" },
                 Case { "'The Hello'", "The Hello'" },
                 Case { "''Hello", "'Hello" },
                 Case { "\"  Hello", "Hello" },
                 Case { "\"", "\"" },
                 Case { "\u201DX", "\u201DX" },
                 Case { "", "" },
             })
            EXPECT_EQ(titleWithoutArticle(c.title), c.key) << c.title;
    }

    TEST(NameOrder, EqualNamesKeepTheirOrder)
    {
        NameOrder order(8);
        for (const char* name : { "file10", "apple", "File9", "Apple", "e\u0301x", "file09", "APPLE", "\u00E9x" })
            order.add(name);
        std::vector<std::uint32_t> wanted { 1, 3, 6, 4, 7, 2, 5, 0 };
        for (std::uint32_t position = 8; position < 40; ++position) {
            order.add("zebra");
            wanted.push_back(position);
        }
        EXPECT_EQ(order.sortedPositions(), wanted);
    }

} // namespace

} // namespace quillbox
