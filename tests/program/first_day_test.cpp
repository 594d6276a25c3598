#include "desktop/controls/controls.h"
#include "desktop/controls/user.h"
#include "program/running_drag.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <csignal>

namespace brisk::desktop {
namespace {

/// Somebody who has just installed the program, and finds the way by what is written on the screen.
class FirstDay : public RunningDrag {
protected:
    void SetUp() override {
        settings_.clear();
        startWindowManager();
        start(controls_.environment());
    }

    /// Nobody who cannot see the screen is left with a control that does not say what it is.
    void expectThatAllControlsAreNamed() {
        for (const Control& control : controls_.controls()) {
            EXPECT_FALSE(control.isFocusable && control.name.empty()) << control.role << " at " << control.place;
        }
    }
    /// What is stored, once the program has ended in order.
    QJsonObject settingsAtTheEnd() {
        kill(program_->id(), SIGTERM);
        EXPECT_TRUE(waitUntil([&] { return !program_->isRunning(); }));
        return QJsonDocument::fromJson(QByteArray::fromStdString(savedSettings())).object();
    }

    AccessibilityBus controls_{server_.environment()};
    User user_{desktop_, controls_};
};

TEST_F(FirstDay, LeadsFromTheGuideToALayoutOfOnesOwn) {
    user_.window("Welcome to Brisk");
    expectThatAllControlsAreNamed();
    user_.press(Key::returnKey);
    // The permission is there already: the guide goes on by itself.
    user_.window("You're Set");
    user_.click("push button", "Done");
    ASSERT_TRUE(waitUntil([&] { return programWindows().empty(); }));

    const Process again = startAgain();
    user_.window("General — Brisk Settings");
    expectThatAllControlsAreNamed();
    user_.click("page tab", "Windows");
    user_.window("Windows — Brisk Settings");
    expectThatAllControlsAreNamed();
    user_.scrollTo("push button", "Add Layout…");
    user_.click("push button", "Add Layout…");

    user_.window("Add Custom Window Layout");
    expectThatAllControlsAreNamed();
    for (const Key key : {Key::k, Key::i, Key::c, Key::k}) {
        user_.press(key);
    }
    // The two columns in the middle, from the top down to the last row but one.
    const PixelRect grid = user_.control("graphic", "Target area").place;
    pointer_.moveTo(grid.x + grid.width * 3 / 8, grid.y + grid.height / 8);
    pointer_.down();
    pointer_.moveTo(grid.x + grid.width * 5 / 8, grid.y + grid.height * 5 / 8);
    pointer_.up();
    user_.control("label", "2×3 area on a 4×4 grid");
    const auto shortcut = [&] { return user_.control("push button", "Window shortcut").description; };
    user_.click("push button", "Window shortcut");
    user_.await([&] { return shortcut().starts_with("Recording"); }, "the recording");
    press(Key::digit1);
    user_.await([&] { return shortcut().starts_with("⌃⌥1"); }, "the shortcut");
    user_.click("check box", "Available as a drag target");
    user_.click("push button", "Save");
    user_.control("label", "2×3 area on a 4×4 grid · Drag target");

    const PixelRect area{.x = 360, .y = 0, .width = 720, .height = 675};
    window_ = openWindow();
    ASSERT_TRUE(waitUntil([&] { return isGrabbed(desktop_, Key::digit1, XCB_MOD_MASK_CONTROL | XCB_MOD_MASK_1); }));
    press(Key::digit1);
    EXPECT_TRUE(comesTo(window_, area));
    putAt(window_, startFrame);
    takeByTitle(window_);
    pressShift();
    dragTo(area.x + 100, area.y + 300);
    pointer_.up();
    keyboard_.up(Key::leftShift);
    EXPECT_TRUE(comesTo(window_, area));

    const QJsonObject settings = settingsAtTheEnd();
    EXPECT_TRUE(settings["hasCompletedOnboarding"].toBool());
    const QJsonArray layouts = settings["customWindowLayouts"].toArray();
    ASSERT_EQ(layouts.size(), 1);
    const QString id = layouts.first()["id"].toString();
    EXPECT_EQ(
        layouts.first().toObject(),
        QJsonObject(
            {{"id", id},
             {"name", "kick"},
             {"isAvailableForDragging", true},
             {"selection",
              QJsonObject(
                  {{"columns", 4}, {"rows", 4}, {"column", 1}, {"row", 0}, {"columnSpan", 2}, {"rowSpan", 3}})}}));
    EXPECT_EQ(settings["commandHotkeys"].toObject(),
              QJsonObject(
                  {{"window.custom." + id, QJsonObject({{"display", "⌃⌥1"}, {"keyCode", 18}, {"modifiers", 6144}})}}));
}

} // namespace
} // namespace brisk::desktop
