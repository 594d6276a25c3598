#include "platform/x11/virtual_key_codes.h"

#include <gtest/gtest.h>

#include <set>

namespace brisk::x11 {
namespace {

TEST(VirtualKeyCodes, EachNamesOneKeyAndBack) {
    std::set<std::uint8_t> seen;
    for (std::uint32_t code = 0; code < 0x200; ++code) {
        SCOPED_TRACE(code);
        if (const auto xKeyCode = xKeyCodeOf(code)) {
            EXPECT_TRUE(seen.insert(*xKeyCode).second) << "two codes for X key " << int{*xKeyCode};
            EXPECT_EQ(virtualKeyCodeOf(*xKeyCode), code);
        }
    }
    for (unsigned xKeyCode = 0; xKeyCode <= 0xFF; ++xKeyCode) {
        EXPECT_EQ(virtualKeyCodeOf(static_cast<std::uint8_t>(xKeyCode)).has_value(), seen.contains(xKeyCode & 0xFFU));
    }
}

TEST(VirtualKeyCodes, NameThePlaceOnTheKeyboard) {
    struct Row {
        const char* key;
        std::uint32_t virtualKeyCode;
        int xKeyCode;
    };
    for (const Row& row : {
             Row{"left arrow", 123, 113},
             Row{"right arrow", 124, 114},
             Row{"down arrow", 125, 116},
             Row{"up arrow", 126, 111},
             Row{"return", 36, 36},
             Row{"keypad enter", 76, 104},
             Row{"space", 49, 65},
             Row{"delete is the backspace key", 51, 22},
             Row{"forward delete", 117, 119},
             Row{"escape", 53, 9},
             Row{"C", 8, 54},
             Row{"the code of 5 follows that of 6", 22, 15},
             Row{"5", 23, 14},
             Row{"below escape", 50, 49},
             Row{"between left shift and Z", 10, 94},
             Row{"F1", 122, 67},
             Row{"F12", 111, 96},
             Row{"F20", 90, 198},
             Row{"keypad 7 and 8 have F20 between them", 89, 79},
             Row{"keypad 8", 91, 80},
             Row{"yen", 93, 132},
         }) {
        SCOPED_TRACE(row.key);
        EXPECT_EQ(xKeyCodeOf(row.virtualKeyCode), row.xKeyCode);
    }
    EXPECT_FALSE(xKeyCodeOf(0x7F)) << "no key has this code";
    EXPECT_FALSE(xKeyCodeOf(0x100 + 8)) << "codes beyond a byte must not wrap onto C";
    EXPECT_FALSE(virtualKeyCodeOf(7)) << "below the first key";
}

} // namespace
} // namespace brisk::x11
