#include "settings/settings_json.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brisk {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

AppSettings decoded(const std::string& text) {
    const auto result = decodeSettings(text);
    if (const auto* error = std::get_if<SettingsDecodingError>(&result)) {
        ADD_FAILURE() << error->description;
        return {};
    }
    return std::get<AppSettings>(result);
}

std::string repeated(const std::string& text, std::size_t count) {
    std::string result;
    for (std::size_t i = 0; i < count; ++i) {
        result += text;
    }
    return result;
}

constexpr const char* customLayout =
    R"({"id": "A", "name": "Wide", "selection": {"columns": 10, "rows": 2, "column": 1, "row": 0, "columnSpan": 2,)"
    R"( "rowSpan": 1}})";

TEST(SettingsJson, AFileThatSaysNothingGivesTheDefaults) {
    const AppSettings defaults;
    EXPECT_EQ(defaults.commandHotkeys.size(), allWindowLayouts.size());
    EXPECT_EQ(defaults.commandHotkeys.at("window.leftHalf"), (HotKeyBinding{123, 6144, "⌃⌥◀"}));
    EXPECT_EQ(defaults.commandHotkeys.at("window.restore"), (HotKeyBinding{51, 6144, "⌃⌥⌫"}));
    for (const char* text : {
             "{}",
             R"({"commandHotkeys": {}, "disabledCommandHotkeys": []})",
             R"({"commandHotkeys": null, "disabledCommandHotkeys": null, "windowGap": null, "customWindowLayouts": null,
                 "dragEnabledBuiltInWindowLayoutIDs": null, "hasCompletedOnboarding": null})",
             R"({"ofALaterVersion": [{"nested": [1.5, "x"]}]})",
             "\xEF\xBB\xBF{}",
         }) {
        SCOPED_TRACE(text);
        EXPECT_EQ(decoded(text), defaults);
    }
}

TEST(SettingsJson, GapsAreCutToTheirRange) {
    struct Row {
        const char* text;
        std::int64_t expected;
    };
    for (const Row& row : {
             Row{"-5", 0}, Row{"-0", 0}, Row{"12", 12}, Row{"12.0", 12}, Row{"1.2e1", 12}, Row{"64", 64}, Row{"65", 64},
             Row{"9223372036854775807", 64}, Row{"-9223372036854775808", 0}, Row{"-9223372036854775808.0", 0},
             Row{"5, \"windowGap\": 6", 6}, // the last of a repeated member counts
         }) {
        SCOPED_TRACE(row.text);
        EXPECT_EQ(decoded(std::string(R"({"windowGap": )") + row.text + "}").windowGap, row.expected);
    }
}

TEST(SettingsJson, ShortcutsAreDefaultsMinusClearedPlusStored) {
    const AppSettings settings = decoded(R"({
        "customWindowLayouts": [)" + std::string(customLayout) +
                                         R"(],
        "disabledCommandHotkeys": ["window.center", "window.middle", "window.custom.A", "window.topHalf",
                                   "window.custom.B", "window.center"],
        "commandHotkeys": {
            "window.topHalf":  {"keyCode": 4294967295, "modifiers": 256, "display": "mine"},
            "window.custom.A": {"keyCode": 18, "modifiers": 256.0, "display": "⌘1"},
            "window.custom.B": {"keyCode": 19, "modifiers": 256, "display": "⌘2"},
            "window.middle":   {"keyCode": 20, "modifiers": 256, "display": "⌘3"}}})");
    EXPECT_THAT(settings.disabledCommandHotkeys,
                ElementsAre("window.center", "window.custom.A", "window.topHalf", "window.center"));
    CommandHotkeys expected = defaultCommandHotkeys();
    expected.erase("window.center");
    expected["window.topHalf"] = {4294967295, 256, "mine"};
    expected["window.custom.A"] = {18, 256, "⌘1"};
    EXPECT_EQ(settings.commandHotkeys, expected);
}

TEST(SettingsJson, DragTargetsAreUniqueSortedAndEligible) {
    EXPECT_THAT(decoded(R"({"dragEnabledBuiltInWindowLayoutIDs": ["window.topHalf", "window.restore", "window.leftHalf",
                            "window.topHalf", "leftHalf", "window.custom.A"]})")
                    .dragEnabledBuiltInWindowLayoutIDs,
                ElementsAre("window.leftHalf", "window.topHalf"));
}

TEST(SettingsJson, CustomLayoutsAreNormalisedOnReading) {
    const AppSettings settings = decoded(R"({"customWindowLayouts": [)" + std::string(customLayout) + "]}");
    ASSERT_EQ(settings.customWindowLayouts.size(), 1U);
    EXPECT_EQ(settings.customWindowLayouts[0], (CustomWindowLayout{"A", "Wide", {6, 2, 1, 0, 2, 1}, false}));
}

TEST(SettingsJson, OneWrongValueMakesTheFileUnreadable) {
    const auto layoutWith = [](const std::string& from, const std::string& to) {
        std::string layout = customLayout;
        layout.replace(layout.find(from), from.size(), to);
        return R"({"customWindowLayouts": [)" + std::string(customLayout) + ", " + layout + "]}";
    };
    const auto binding = [](const std::string& members) {
        return R"({"commandHotkeys": {"window.middle": {)" + members + "}}}";
    };
    struct Row {
        std::string text;
        const char* complaint;
    };
    for (const Row& row : {
             Row{"", "parse error"},
             Row{"[]", "not an object"},
             Row{"{} {}", "parse error"},
             Row{R"({"windowGap": NaN})", "parse error"},
             Row{"{\"caf\xE9\": 1}", "UTF-8"},
             Row{std::string("{\0\"\0}\0", 6), "parse error"},
             Row{R"({"windowGap": "5"})", "windowGap: not a number"},
             Row{R"({"windowGap": true})", "windowGap: not a number"},
             Row{R"({"windowGap": 12.5})", "windowGap: not an integer in range"},
             Row{R"({"windowGap": 1e300})", "windowGap: not an integer in range"},
             Row{R"({"windowGap": 1e400})", "number overflow"},
             Row{R"({"windowGap": 9223372036854775808})", "windowGap: not an integer in range"},
             Row{R"({"windowGap": 9223372036854775808.0})", "windowGap: not an integer in range"},
             Row{R"({"hasCompletedOnboarding": 1})", "hasCompletedOnboarding: not a Boolean"},
             Row{R"({"disabledCommandHotkeys": {}})", "disabledCommandHotkeys: not an array"},
             Row{R"({"disabledCommandHotkeys": ["window.center", null]})", "1: not a string"},
             Row{R"({"dragEnabledBuiltInWindowLayoutIDs": "window.center"})", "not an array"},
             Row{R"({"commandHotkeys": []})", "commandHotkeys: not an object"},
             Row{binding(R"("keyCode": 1, "modifiers": 2)"), "no display"},
             Row{binding(R"("keyCode": 1, "modifiers": 2, "display": null)"), "display: not a string"},
             Row{binding(R"("keyCode": -1, "modifiers": 2, "display": "")"), "keyCode: not an integer in range"},
             Row{binding(R"("keyCode": 1, "modifiers": 4294967296, "display": "")"), "modifiers: not an integer"},
             Row{layoutWith(R"("id": "A")", R"("ID": "A")"), "1: no id"},
             Row{layoutWith(R"("Wide")", "7"), "name: not a string"},
             Row{layoutWith(R"(, "rowSpan": 1)", ""), "selection: no rowSpan"},
             Row{layoutWith("10", "null"), "columns: not a number"},
             Row{layoutWith(R"("id")", R"("isAvailableForDragging": 0, "id")"), "not a Boolean"},
             Row{repeated("[", 100'000), "too deep"},
             Row{"[" + repeated("[],", maximumSettingsValues / 2) + "[]]", "too many values"},
             Row{R"({"other": )" + repeated(R"({"a":[)", 50'000) + repeated("]}", 50'000) + "}", "too deep"},
         }) {
        SCOPED_TRACE(row.text.substr(0, 200));
        const auto result = decodeSettings(row.text);
        const auto* error = std::get_if<SettingsDecodingError>(&result);
        ASSERT_NE(error, nullptr);
        EXPECT_THAT(error->description, HasSubstr(row.complaint));
    }
}

TEST(SettingsJson, NestingIsReadUpToTheLimitAndBracketsInTextDoNotCount) {
    const auto nested = [](std::size_t depth) {
        return R"({"other": )" + repeated("[", depth - 1) + repeated("]", depth - 1) + "}";
    };
    EXPECT_EQ(decoded(nested(maximumSettingsDepth)), AppSettings());
    EXPECT_TRUE(std::holds_alternative<SettingsDecodingError>(decodeSettings(nested(maximumSettingsDepth + 1))));
    EXPECT_EQ(decoded(R"({"other": "\"\\\")" + repeated("[{", 1'000) + "\"}"), AppSettings());
}

TEST(SettingsJson, OnlyShortcutsThatDifferFromTheirDefaultAreWritten) {
    AppSettings settings;
    settings.commandHotkeys.at("window.leftHalf").display = "another text";
    EXPECT_THAT(encodeSettings(settings), Not(HasSubstr("window.")));
    settings.commandHotkeys.at("window.leftHalf").modifiers = 4096;
    EXPECT_THAT(encodeSettings(settings), HasSubstr("window.leftHalf"));
}

// The exact text: other programs and older versions read it, and a file under version control should not churn.
TEST(SettingsJson, FilesAreIndentedWithSortedKeys) {
    AppSettings settings;
    settings.customWindowLayouts = {{"A", "Breit \"ü\"", {3, 2, 1, 0, 2, 1}, true}};
    settings.commandHotkeys["window.custom.A"] = {18, 256, "⌘1"};
    settings.disabledCommandHotkeys = {"window.center"};
    settings.commandHotkeys.erase("window.center");
    settings.windowGap = 7;
    EXPECT_EQ(encodeSettings(settings), R"({
  "commandHotkeys": {
    "window.custom.A": {
      "display": "⌘1",
      "keyCode": 18,
      "modifiers": 256
    }
  },
  "customWindowLayouts": [
    {
      "id": "A",
      "isAvailableForDragging": true,
      "name": "Breit \"ü\"",
      "selection": {
        "column": 1,
        "columnSpan": 2,
        "columns": 3,
        "row": 0,
        "rowSpan": 1,
        "rows": 2
      }
    }
  ],
  "disabledCommandHotkeys": [
    "window.center"
  ],
  "dragEnabledBuiltInWindowLayoutIDs": [],
  "hasCompletedOnboarding": false,
  "windowGap": 7
}
)");
    EXPECT_EQ(decoded(encodeSettings(settings)), settings);
}

TEST(SettingsJson, TextThatIsNotUtf8IsWrittenWithReplacements) {
    AppSettings settings;
    settings.customWindowLayouts = {{"A\xFF", "half \xE2\x8C", {}, false}};
    settings.commandHotkeys["window.custom.A\xFF"] = {18, 256, "\xC0"};
    const AppSettings back = decoded(encodeSettings(settings));
    ASSERT_EQ(back.customWindowLayouts.size(), 1U);
    EXPECT_EQ(back.customWindowLayouts[0].name, "half \uFFFD");
    EXPECT_TRUE(back.commandHotkeys.contains("window.custom.A\uFFFD")) << "the layout keeps its shortcut";
}

} // namespace
} // namespace brisk
