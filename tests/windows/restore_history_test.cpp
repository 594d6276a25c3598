#include "windows/restore_history.h"

#include "support/printing.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace brisk {
namespace {

using History = WindowRestoreHistory<std::string>;

constexpr CGRect original{.origin = {100, 100}, .size = {640, 480}};
constexpr CGRect applied{.origin = {0, 25}, .size = {720, 875}};

TEST(RestoreHistory, RecordCountsWhileTheWindowSitsWithinTwoPoints) {
    struct Row {
        const char* why;
        CGRect current;
        bool isUsable;
    };
    for (const Row& row : {
             Row{"exactly there", applied, true},
             Row{"two points off on all four", {{2, 27}, {718, 877}}, true},
             Row{"more in x", {{2.01, 25}, {720, 875}}, false},
             Row{"more in y", {{0, 22.99}, {720, 875}}, false},
             Row{"more in width", {{0, 25}, {722.01, 875}}, false},
             Row{"more in height", {{0, 25}, {720, 872.99}}, false},
         }) {
        SCOPED_TRACE(row.why);
        History history;
        history.store("window", {.originalFrame = original, .lastAppliedFrame = applied});
        History same = history;
        EXPECT_EQ(history.originalFrameForApplying("window", row.current), row.isUsable ? original : row.current);
        EXPECT_EQ(same.restoreFrame("window", row.current), row.isUsable ? std::optional(original) : std::nullopt);
        EXPECT_EQ(history.records().size(), row.isUsable ? 1U : 0U) << "a stale record is dropped";
        EXPECT_EQ(same.records().size(), row.isUsable ? 1U : 0U);
    }
}

TEST(RestoreHistory, KeepsWindowsApart) {
    History history;
    history.store("a", {.originalFrame = original, .lastAppliedFrame = applied});
    history.store("b", {.originalFrame = applied, .lastAppliedFrame = original});
    EXPECT_EQ(history.restoreFrame("c", applied), std::nullopt);
    EXPECT_EQ(history.originalFrameForApplying("c", applied), applied);
    history.store("a", {.originalFrame = applied, .lastAppliedFrame = applied});
    EXPECT_EQ(history.restoreFrame("a", applied), applied);
    history.removeRecords([](const std::string& key) { return key == "a"; });
    EXPECT_EQ(history.restoreFrame("a", applied), std::nullopt);
    EXPECT_EQ(history.restoreFrame("b", original), applied);
}

} // namespace
} // namespace brisk
