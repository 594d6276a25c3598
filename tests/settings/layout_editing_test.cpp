#include "settings/layout_editing.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <set>

namespace brisk {
namespace {

TEST(LayoutEditing, ANewLayoutIsTheWholeDisplayUnderAFreshID) {
    AppSettings settings;
    settings.customWindowLayouts.resize(2);
    std::set<std::string> ids;
    for (int i = 0; i < 200; ++i) {
        const CustomWindowLayout layout = defaultNewLayout(settings);
        EXPECT_EQ(layout.name, "Custom Layout 3");
        EXPECT_EQ(layout.selection, (WindowGridSelection{.columns = 4, .rows = 4, .columnSpan = 4, .rowSpan = 4}));
        EXPECT_FALSE(layout.isAvailableForDragging);
        EXPECT_THAT(layout.id, testing::MatchesRegex("[0-9A-F]{8}-[0-9A-F]{4}-4[0-9A-F]{3}-[89AB][0-9A-F]{3}-"
                                                     "[0-9A-F]{12}"));
        ids.insert(layout.id);
    }
    EXPECT_EQ(ids.size(), 200U);
}

TEST(LayoutEditing, NamesAreSavedWithoutTheSpaceAroundThem) {
    struct Row {
        const char* why;
        const char* typed;
        const char* expected;
    };
    for (const Row& row : {
             Row{"inner spaces stay", "  Left  third \t", "Left  third"},
             Row{"line breaks at the ends go, inner ones stay", "\n\r\nTwo\nlines\u2028", "Two\nlines"},
             Row{"blank is no name", " \n\u00A0\u3000", "Custom Layout 1"},
             Row{"nor is nothing", "", "Custom Layout 1"},
             Row{"any script, any sign", " עברית 🪟 ", "עברית 🪟"},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(layoutName(row.typed, "Custom Layout 1"), row.expected);
    }
}

} // namespace
} // namespace brisk
