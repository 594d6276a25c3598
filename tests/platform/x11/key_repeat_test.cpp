#include "platform/x11/hot_keys.h"

#include <gtest/gtest.h>

#include <vector>

namespace brisk::x11 {
namespace {

TEST(KeyRepeat, CountsEachTimeAKeyGoesDown) {
    using enum KeyRepeat::Style;
    struct Event {
        char direction;
        xcb_keycode_t keyCode;
        xcb_timestamp_t time;
    };
    struct Row {
        const char* why;
        KeyRepeat::Style style;
        std::vector<Event> events;
        std::vector<bool> expected;
    };
    for (const Row& row : {
             Row{"pressed twice", presses, {{'+', 40, 1}, {'-', 40, 2}, {'+', 40, 3}}, {true, true}},
             Row{"held, the server leaves out the releases",
                 presses,
                 {{'+', 40, 1}, {'+', 40, 5}, {'+', 40, 6}},
                 {true, false, false}},
             Row{"held, the server repeats the release as well",
                 releasesAndPresses,
                 {{'+', 40, 1}, {'-', 40, 5}, {'+', 40, 5}, {'-', 40, 6}, {'+', 40, 6}, {'-', 40, 7}, {'+', 40, 9}},
                 {true, false, false, true}},
             Row{"let go and pressed within a millisecond",
                 presses,
                 {{'+', 40, 1}, {'-', 40, 1}, {'+', 40, 1}},
                 {true, true}},
             Row{"another key while the first is held",
                 presses,
                 {{'+', 40, 1}, {'+', 41, 2}, {'+', 41, 3}},
                 {true, true, false}},
             Row{"the second key's release went to others",
                 presses,
                 {{'+', 40, 1}, {'+', 41, 2}, {'-', 40, 3}, {'+', 41, 9}},
                 {true, true, true}},
             Row{"the second key let go first",
                 presses,
                 {{'+', 40, 1}, {'+', 41, 2}, {'-', 41, 3}, {'+', 41, 4}, {'+', 40, 5}},
                 {true, true, true, false}},
             Row{"the times fell on the same millisecond, the keys did not",
                 releasesAndPresses,
                 {{'+', 40, 1}, {'-', 40, 2}, {'+', 41, 2}},
                 {true, true}},
         }) {
        SCOPED_TRACE(row.why);
        KeyRepeat repeat{row.style};
        std::vector<bool> firstPresses;
        for (const Event& event : row.events) {
            if (event.direction == '+') {
                firstPresses.push_back(repeat.press(event.keyCode, event.time));
            } else {
                repeat.release(event.keyCode, event.time);
            }
        }
        EXPECT_EQ(firstPresses, row.expected);
    }
}

} // namespace
} // namespace brisk::x11
