#include "text/unicode_text.h"

#include <gtest/gtest.h>

namespace brisk {
namespace {

TEST(UnicodeText, TrimsUnicodesWhiteSpaceAtTheEndsOnly) {
    struct Row {
        const char* given;
        const char* expected;
    };
    for (const Row& row : {
             Row{"", ""},
             Row{" \t\r\n", ""},
             Row{"\u00A0 two  words\u2003\n", "two  words"},
             Row{"\u3000\u30a2\u3000", "\u30a2"},
             Row{"\uF708", "\uF708"},
             Row{"\xC2", "\xC2"},
         }) {
        EXPECT_EQ(trimmed(row.given), row.expected) << '"' << row.given << '"';
    }
}

TEST(UnicodeText, ChangesCaseBeyondAsciiAndLeavesOtherBytesAlone) {
    struct Row {
        const char* small;
        const char* capital;
    };
    for (const Row& row : {Row{"k", "K"}, Row{"é", "É"}, Row{"ж", "Ж"}, Row{"ω", "Ω"}, Row{"7", "7"}, Row{"漢", "漢"},
                           Row{"𐐨", "𐐀"}, Row{"\xFF\xC3", "\xFF\xC3"}}) {
        EXPECT_EQ(uppercased(row.small), row.capital);
        EXPECT_EQ(lowercased(row.capital), row.small);
    }
    EXPECT_EQ(uppercased("ß"), "SS");
}

} // namespace
} // namespace brisk
