#include "drag/zone_picture.h"

#include <gtest/gtest.h>

#include <vector>

namespace brisk {
namespace {

WindowDragZone custom(const char* name, const CGRect& frame) {
    return {.target = CustomWindowLayout{.id = name, .name = name, .isAvailableForDragging = true}, .frame = frame};
}

std::vector<std::string> labels(const std::vector<ZonePicture>& pictures) {
    std::vector<std::string> result;
    result.reserve(pictures.size());
    for (const ZonePicture& picture : pictures) {
        result.push_back(picture.label);
    }
    return result;
}

TEST(ZonePictures, SayWhatTheZoneIs) {
    const std::vector<WindowDragZone> zones{{WindowLayout::topLeft, {{-1920, 540}, {960, 540}}},
                                            custom("Notes", {{-1920, 0}, {480, 540}})};
    const auto pictures = zonePictures(zones, "window.custom.Notes", {-1920, -10});
    ASSERT_EQ(pictures.size(), 2U);
    EXPECT_EQ(pictures[0], (ZonePicture{.frame = {{0, 550}, {960, 540}},
                                        .kind = ZoneKind::builtIn,
                                        .isActive = false,
                                        .label = "Built-in \xC2\xB7 Top Left"}));
    EXPECT_EQ(pictures[1], (ZonePicture{.frame = {{0, 10}, {480, 540}},
                                        .kind = ZoneKind::custom,
                                        .isActive = true,
                                        .label = "Custom \xC2\xB7 Notes"}));
}

TEST(ZonePictures, ArePaintedLargestFirst) {
    const WindowDragZone small = custom("small", {{0, 0}, {100, 100}});
    const WindowDragZone large = custom("large", {{0, 0}, {400, 100}});
    const WindowDragZone alsoLarge = custom("also large", {{0, 0}, {100, 400}});
    const WindowDragZone inverted = custom("inverted", {{0, 0}, {-500, -500}});
    struct Row {
        const char* why;
        std::vector<WindowDragZone> zones;
        std::vector<std::string> expected;
    };
    for (const Row& row : {
             Row{"the small one on top", {small, large}, {"Custom · large", "Custom · small"}},
             Row{"equal areas keep their order", {alsoLarge, large}, {"Custom · also large", "Custom · large"}},
             Row{"in either order", {large, alsoLarge}, {"Custom · large", "Custom · also large"}},
             Row{"two negative sides are no area", {inverted, small}, {"Custom · small", "Custom · inverted"}},
             Row{"no zones", {}, {}},
         }) {
        SCOPED_TRACE(row.why);
        EXPECT_EQ(labels(zonePictures(row.zones, "window.custom.large", {})), row.expected)
            << "being active changes nothing";
    }
}

} // namespace
} // namespace brisk
