#include "core/ReplaceText.h"

#include <gtest/gtest.h>

TEST(ReplaceText, RescansTheWholeResultAfterEachReplacement)
{
    EXPECT_EQ(ReplaceText(",,,", ",,", ", ,"), ", , ,");
    EXPECT_EQ(ReplaceText("$GPGSA,A,,,,5", ",,", ", ,"), "$GPGSA,A, , , ,5");
    EXPECT_EQ(ReplaceText("aaaa", "aa", "a"), "a");
}

TEST(ReplaceText, EndsWhenTheReplacementHoldsTheSearchText)
{
    EXPECT_EQ(ReplaceText("a,b", ",", ",,"), "a,,b");
    EXPECT_EQ(ReplaceText("abc", "", "x"), "abc");
    EXPECT_EQ(ReplaceText("abc", "z", "x"), "abc");
}
