#include "hotkeys/hot_key_recorder.h"

#include "hotkeys/function_keys.h"
#include "platform/simulated/desktop.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace brisk {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;
using testing::IsEmpty;
using Tint = HotKeyRecorder::Tint;

constexpr NSEventModifierFlags controlOption = NSEventModifierFlagControl | NSEventModifierFlagOption;
const HotKeyBinding controlOptionU{.keyCode = 32, .modifiers = 6144, .display = "⌃⌥U"};
const HotKeyBinding controlOptionI{.keyCode = 34, .modifiers = 6144, .display = "⌃⌥I"};
const KeyEvent escape{.keyCode = 53, .charactersIgnoringModifiers = "\x1B"};

KeyEvent press(std::uint16_t keyCode, const char* characters, NSEventModifierFlags flags = controlOption) {
    return {.modifierFlags = flags, .keyCode = keyCode, .charactersIgnoringModifiers = characters};
}

/// A control without a toolkit: what is asked of it and what its owner hears, in order, with the title at that time.
class HotKeyRecorderTest : public testing::Test, public HotKeyRecorderControl {
protected:
    explicit HotKeyRecorderTest(std::optional<HotKeyBinding> binding = std::nullopt)
        : recorder(std::make_unique<HotKeyRecorder>(std::move(binding), queue, *this)) {
        recorder->onRecorded = [this](const HotKeyBinding& recorded) { log.push_back("recorded " + recorded.display); };
        recorder->onCleared = [this] { log.emplace_back("cleared"); };
    }

    void recorderChanged() override { log.push_back("shows " + recorder->title()); }
    void recordingBegan() override { log.emplace_back("began"); }
    void recordingEnded() override { log.emplace_back("ended"); }
    void becomeFirstResponder() override { log.emplace_back("focus"); }
    void resignFirstResponder() override {
        log.emplace_back("no focus");
        recorder->resignFirstResponder();
    }
    void beep() override { log.emplace_back("beep"); }

    /// What happened since the last look.
    std::vector<std::string> effects() { return std::exchange(log, {}); }

    simulated::MainQueue queue;
    std::vector<std::string> log;
    std::unique_ptr<HotKeyRecorder> recorder;
};

TEST_F(HotKeyRecorderTest, RecordsTheFirstUsableKeys) {
    EXPECT_EQ(recorder->title(), "Record Shortcut");
    EXPECT_EQ(recorder->accessibilityValue(), "Not assigned");
    EXPECT_FALSE(recorder->keyDown(press(32, "u"))) << "before the click keys are the button's own";

    recorder->beginRecording();
    EXPECT_THAT(effects(), ElementsAre("began", "shows Type Shortcut", "focus"));
    EXPECT_EQ(recorder->tint(), Tint::accent);
    EXPECT_EQ(recorder->accessibilityValue(), "Recording");
    recorder->beginRecording();
    EXPECT_THAT(effects(), ElementsAre("shows Type Shortcut", "focus")) << "a second click begins nothing twice";

    recorder->keyDown(press(32, "u", 0));
    recorder->keyDown(press(32, "U", NSEventModifierFlagShift));
    recorder->keyDown({.modifierFlags = controlOption, .keyCode = 48, .charactersIgnoringModifiers = "\t"});
    EXPECT_THAT(effects(), ElementsAre("beep", "beep", "beep"));
    EXPECT_TRUE(recorder->isRecordingShortcut());

    EXPECT_TRUE(recorder->keyDown(press(32, "u")));
    EXPECT_THAT(effects(), ElementsAre("ended", "shows ⌃⌥U", "no focus", "recorded ⌃⌥U"));
    EXPECT_EQ(recorder->binding(), controlOptionU);
    EXPECT_EQ(recorder->tint(), Tint::none);
    EXPECT_EQ(recorder->accessibilityValue(), "⌃⌥U");
}

TEST_F(HotKeyRecorderTest, LetsItsOwnerEndIt) {
    recorder->onRecorded = [this](const HotKeyBinding&) { recorder.reset(); };
    recorder->beginRecording();
    EXPECT_TRUE(recorder->keyDown(press(32, "u")));
}

class AssignedHotKeyRecorderTest : public HotKeyRecorderTest {
protected:
    AssignedHotKeyRecorderTest() : HotKeyRecorderTest(controlOptionU) {
        recorder->validationMessage = [](const HotKeyBinding& candidate) {
            return isSameShortcut(candidate, controlOptionI) ? std::optional<std::string>("Used by Left Half")
                                                             : std::nullopt;
        };
    }
    void refuseOne() {
        recorder->beginRecording();
        recorder->keyDown(press(34, "i"));
    }
};

TEST_F(AssignedHotKeyRecorderTest, GivesUpWithoutAWord) {
    recorder->beginRecording();
    effects();
    recorder->keyDown(escape);
    EXPECT_THAT(effects(), ElementsAre("ended", "shows ⌃⌥U", "no focus"));

    recorder->beginRecording();
    effects();
    recorder->resignFirstResponder();
    EXPECT_THAT(effects(), ElementsAre("ended", "shows ⌃⌥U", "no focus"));
    recorder->resignFirstResponder();
    EXPECT_THAT(effects(), IsEmpty()) << "an idle button loses focus like any other";
    EXPECT_EQ(recorder->binding(), controlOptionU);
}

TEST_F(AssignedHotKeyRecorderTest, DeletesWhateverModifiersAreHeld) {
    for (const KeyEvent& deletion : {press(51, "\x7F"), press(117, "\uF728", 0)}) {
        recorder->beginRecording();
        effects();
        recorder->keyDown(deletion);
        EXPECT_THAT(effects(), ElementsAre("ended", "shows Record Shortcut", "no focus", "cleared"));
        EXPECT_EQ(recorder->binding(), std::nullopt);
    }
}

TEST_F(AssignedHotKeyRecorderTest, ShowsWhyItRefusedForAMoment) {
    recorder->beginRecording();
    effects();
    recorder->keyDown(press(34, "i"));
    EXPECT_THAT(effects(), ElementsAre("beep", "ended", "shows Used by Left Half", "no focus"));
    EXPECT_EQ(recorder->tint(), Tint::red);
    EXPECT_EQ(recorder->binding(), controlOptionU);
    EXPECT_FALSE(recorder->keyDown(press(40, "k"))) << "the moment is not for recording";

    queue.advance(1149ms);
    EXPECT_THAT(effects(), IsEmpty());
    queue.advance(1ms);
    EXPECT_THAT(effects(), ElementsAre("shows ⌃⌥U"));
    EXPECT_EQ(recorder->tint(), Tint::none);
}

TEST_F(AssignedHotKeyRecorderTest, AClickEndsARefusalAtOnce) {
    refuseOne();
    queue.advance(1000ms);
    recorder->beginRecording();
    effects();
    queue.advance(2000ms);
    EXPECT_THAT(effects(), IsEmpty());
    EXPECT_EQ(recorder->title(), "Type Shortcut");
    recorder->keyDown(press(34, "i"));
    queue.advance(1149ms);
    EXPECT_EQ(recorder->title(), "Used by Left Half") << "a second refusal has its full time";
    queue.advance(1ms);
    EXPECT_EQ(recorder->title(), "⌃⌥U");
}

TEST_F(AssignedHotKeyRecorderTest, MayGoWhileItRefuses) {
    refuseOne();
    recorder.reset();
    effects();
    queue.advance(2000ms);
    EXPECT_THAT(effects(), IsEmpty());
}

TEST(FunctionKeys, ReadAsWhatIsPrintedOnThem) {
    for (const auto& [stored, shown] : {std::pair("⌃⌥\uF708", "⌃⌥F5"), std::pair("⇧⌘\uF72C", "⇧⌘Page Up"),
                                        std::pair("⌃⌥◀", "⌃⌥◀"), std::pair("⌃F", "⌃F"), std::pair("", "")}) {
        EXPECT_EQ(legibleDisplay(stored), shown);
    }
    EXPECT_EQ(functionKeyCharacter(96), "\uF708");
    EXPECT_EQ(functionKeyCharacter(0), std::nullopt);
}

} // namespace
} // namespace brisk
