#include "ui/hot_key_recorder_view.h"

#include "platform/simulated/desktop.h"
#include "ui/person.h"

#include <QAccessible>
#include <QDialog>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace brisk {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

/// A dialog with a text field and a recorder, as the recorder's owners have it.
class HotKeyRecorderViewTest : public testing::Test {
protected:
    HotKeyRecorderViewTest() {
        auto* const layout = new QHBoxLayout(&window);
        layout->addWidget(&field);
        addRecorder({{.keyCode = 32, .modifiers = 6144, .display = "⌃⌥U"}});
        showActive(window);
    }

    void addRecorder(std::optional<HotKeyBinding> binding) {
        recorder = new HotKeyRecorderView(
            std::move(binding),
            {.hotKeys = desktop.hotKeys, .keyInput = desktop.keyInput, .mainQueue = desktop.mainQueue});
        recorder->onRecorded = [this](const HotKeyBinding& accepted) { recorded.push_back(accepted.display); };
        recorder->validationMessage = [this](const HotKeyBinding&) { return refusal; };
        window.layout()->addWidget(recorder);
    }
    void click() { QTest::mouseClick(recorder, Qt::LeftButton); }

    /// Whether the program's own shortcuts work and the keyboard is everybody's.
    bool isKeyboardFree() const { return !desktop.hotKeys.isSuspended() && QWidget::keyboardGrabber() == nullptr; }

    simulated::Desktop desktop;
    std::optional<std::string> refusal;
    std::vector<std::string> recorded;
    QDialog window;
    QLineEdit field;
    HotKeyRecorderView* recorder = nullptr;
};

TEST_F(HotKeyRecorderViewTest, RecordsWhatIsTypedAfterAClick) {
    EXPECT_EQ(recorder->text(), "⌃⌥U");
    EXPECT_TRUE(isKeyboardFree());
    click();
    EXPECT_EQ(recorder->text(), "Type Shortcut");
    EXPECT_TRUE(desktop.hotKeys.isSuspended());
    EXPECT_EQ(QWidget::keyboardGrabber(), recorder);

    desktop.log.clear();
    pressKey(window, 58, 0, Qt::Key_Alt); // a modifier going down is not a key yet
    EXPECT_THAT(desktop.log.calls(), ElementsAre());
    pressKey(window, 32, 0, Qt::Key_U);
    pressKey(window, 48, 0, Qt::Key_Tab);
    EXPECT_THAT(desktop.log.calls(), ElementsAre("beep", "beep"));

    pressKey(window, 96, controlOption, Qt::Key_F5);
    EXPECT_EQ(recorder->text(), "⌃⌥F5") << "legible";
    EXPECT_THAT(recorded, ElementsAre("⌃⌥\uF708")) << "as stored";
    EXPECT_TRUE(isKeyboardFree());
    EXPECT_FALSE(recorder->hasFocus());
}

TEST_F(HotKeyRecorderViewTest, EveryWayOutFreesTheKeyboard) {
    struct Way {
        const char* name;
        std::function<void()> take;
    };
    for (const Way& way : std::vector<Way>{
             {"Escape", [&] { pressKey(window, 53, 0, Qt::Key_Escape); }},
             {"cleared", [&] { pressKey(window, 51, 0, Qt::Key_Backspace); }},
             {"refused",
              [&] {
                  refusal = "Used by Left Half";
                  pressKey(window, 34, controlOption, Qt::Key_I);
              }},
             {"another control clicked", [&] { field.setFocus(Qt::MouseFocusReason); }},
             {"window no longer active", [&] { QApplication::setActiveWindow(nullptr); }},
             {"window closed", [&] { window.close(); }},
             {"button gone", [&] { delete std::exchange(recorder, nullptr); }},
         }) {
        SCOPED_TRACE(way.name);
        if (recorder == nullptr) {
            addRecorder(std::nullopt);
        }
        showActive(window);
        click();
        ASSERT_FALSE(isKeyboardFree());
        way.take();
        EXPECT_TRUE(isKeyboardFree());
        EXPECT_TRUE(recorder == nullptr || !recorder->isRecordingShortcut());
    }
    EXPECT_THAT(recorded, ElementsAre());
}

TEST_F(HotKeyRecorderViewTest, AHeldKeyEndsOnlyTheRecording) {
    constexpr quint32 escape = 53;
    constexpr quint32 shift = 56;
    const auto send = [&](QEvent::Type type, quint32 scanCode, Qt::Key key, bool isRepeat) {
        QKeyEvent event(type, key, Qt::NoModifier, scanCode, 0, 0, {}, isRepeat);
        QApplication::sendEvent(&window, &event);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    };
    field.setFocus();
    click();
    QKeyEvent down(QEvent::KeyPress, Qt::Key_Escape, Qt::ShiftModifier, escape, 0, NSEventModifierFlagShift);
    QApplication::sendEvent(recorder, &down);
    ASSERT_FALSE(recorder->isRecordingShortcut());
    EXPECT_EQ(recorder->text(), "⌃⌥U");

    send(QEvent::KeyPress, escape, Qt::Key_Escape, true);
    EXPECT_TRUE(window.isVisible()) << "the repeats must not close the dialog";
    send(QEvent::KeyRelease, shift, Qt::Key_Shift, false);
    send(QEvent::KeyRelease, escape, Qt::Key_Escape, true);
    send(QEvent::KeyPress, escape, Qt::Key_Escape, true);
    EXPECT_TRUE(window.isVisible()) << "nor those after a modifier was let go";
    send(QEvent::KeyRelease, escape, Qt::Key_Escape, false);
    send(QEvent::KeyPress, escape, Qt::Key_Escape, true);
    EXPECT_FALSE(window.isVisible()) << "once the key was let go, it is the dialog's";
}

TEST_F(HotKeyRecorderViewTest, ALongRefusalKeepsItsPlace) {
    const std::string name(10000, 'n');
    refusal = "Used by R&D\n" + name;
    const int height = recorder->height();
    click();
    pressKey(window, 34, controlOption, Qt::Key_I);
    QApplication::processEvents();
    EXPECT_LE(recorder->width(), 240);
    EXPECT_EQ(recorder->height(), height);
    EXPECT_EQ(recorder->toolTip(), QString::fromStdString("Used by R&D " + name));
    desktop.mainQueue.advance(1150ms);
    EXPECT_EQ(recorder->toolTip(), "Click, then press a shortcut. Press Delete to clear.");
    EXPECT_EQ(recorder->text(), "⌃⌥U");
}

TEST_F(HotKeyRecorderViewTest, LooksTheSameToWhoReadsFromTheRightAndWithoutAShortcut) {
    const QImage picture = recorder->grab().toImage();
    recorder->setLayoutDirection(Qt::RightToLeft);
    EXPECT_EQ(recorder->grab().toImage(), picture) << "keys stand in the order in which they are named";
    const int width = recorder->sizeHint().width();
    click();
    EXPECT_EQ(recorder->sizeHint().width(), width);
    pressKey(window, 51, 0, Qt::Key_Backspace);
    EXPECT_EQ(recorder->sizeHint().width(), width) << "rows are in line";
}

TEST_F(HotKeyRecorderViewTest, WorksFromTheKeyboardAndSaysWhatItIs) {
    recorder->setFocus();
    QTest::keyClick(recorder, Qt::Key_Return);
    EXPECT_FALSE(recorder->isRecordingShortcut()) << "Return is for the dialog's default button";
    QTest::keyClick(recorder, Qt::Key_Space);
    EXPECT_TRUE(recorder->isRecordingShortcut());

    QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(recorder);
    EXPECT_EQ(accessible->text(QAccessible::Name), "Window shortcut");
    EXPECT_EQ(accessible->text(QAccessible::Value), "Recording");
    pressKey(window, 53, 0, Qt::Key_Escape);
    EXPECT_EQ(accessible->text(QAccessible::Value), "⌃⌥U");
    EXPECT_EQ(accessible->text(QAccessible::Description), "⌃⌥U. " + recorder->toolTip());
    EXPECT_EQ(accessible->role(), QAccessible::PushButton);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::pressAction());
    EXPECT_TRUE(recorder->isRecordingShortcut());
}

} // namespace
} // namespace brisk
