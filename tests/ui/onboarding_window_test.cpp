#include "ui/onboarding_window.h"

#include "platform/simulated/desktop.h"
#include "platform/simulated/link_opener.h"
#include "ui/key_cap.h"
#include "ui/person.h"
#include "ui/text_label.h"

#include <QAccessible>
#include <QPointer>
#include <QPushButton>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <memory>
#include <string>
#include <vector>

namespace brisk {
namespace {

using namespace std::chrono_literals;
using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;

/// The guide in the hands of its owner, who releases it when it ends.
class OnboardingWindowTest : public testing::Test {
protected:
    void open(const std::string& productPageAddress = "https://brisk.example/product?a&b") {
        guide =
            std::make_unique<BriskOnboardingWindow>(OnboardingWindowServices{.accessibility = desktop.accessibility,
                                                                             .mainQueue = desktop.mainQueue,
                                                                             .links = links,
                                                                             .productPageAddress = productPageAddress,
                                                                             .makeMenuBar = nullptr},
                                                    [this] {
                                                        ++timesFinished;
                                                        guide.reset();
                                                    });
        window = &guide->window();
        guide->showWindow();
        showActive(*window);
    }
    void press(Qt::Key key) { QTest::keyClick(window, key); }
    std::string buttonTitle() const { return window->findChild<QPushButton*>("primaryButton")->text().toStdString(); }
    std::string status() const { return window->findChild<TextLabel*>("status")->text().toStdString(); }
    std::string shown() const { return window->windowTitle().toStdString() + " | " + buttonTitle() + " | " + status(); }

    simulated::Desktop desktop;
    simulated::LinkOpener links{desktop.log};
    std::unique_ptr<BriskOnboardingWindow> guide;
    QPointer<QWidget> window;
    int timesFinished = 0;
};

TEST_F(OnboardingWindowTest, ReturnLeadsThroughAndOut) {
    open();
    EXPECT_EQ(shown(), "Welcome to Brisk | Continue | ");
    press(Qt::Key_Return);
    EXPECT_EQ(shown(), "Permission | Continue | Permission granted.");
    press(Qt::Key_Enter);
    EXPECT_EQ(shown(), "You're Set | Done | ");
    EXPECT_EQ(timesFinished, 0);
    press(Qt::Key_Return);
    EXPECT_EQ(timesFinished, 1);
    EXPECT_EQ(guide, nullptr);
    ASSERT_TRUE(window) << "not while it is still closing";
    EXPECT_FALSE(window->isVisible());
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(window);
}

TEST_F(OnboardingWindowTest, AHeldReturnIsOneStep) {
    open();
    press(Qt::Key_Return);
    for (int repeats = 0; repeats < 5; ++repeats) {
        QTest::simulateEvent(window, true, Qt::Key_Return, Qt::NoModifier, QStringLiteral("\r"), true);
    }
    EXPECT_EQ(window->windowTitle(), "Permission");
}

TEST_F(OnboardingWindowTest, MovesOnWhenThePermissionIsGrantedMeanwhile) {
    desktop.accessibility.isTrusted = false;
    open();
    press(Qt::Key_Return);
    EXPECT_EQ(shown(), "Permission | Open System Settings | Waiting for permission…");
    desktop.log.clear();
    press(Qt::Key_Return);
    press(Qt::Key_Return);
    EXPECT_THAT(desktop.log.calls(), Contains("AXIsProcessTrustedWithOptions prompt").Times(2));
    const QPointer<QWidget> partOfStep = window->findChildren<QWidget*>().last();
    desktop.mainQueue.advance(1500ms);
    EXPECT_TRUE(partOfStep) << "a look that finds nothing shows nothing";
    desktop.accessibility.isTrusted = true;
    desktop.mainQueue.advance(499ms);
    EXPECT_EQ(window->windowTitle(), "Permission");
    desktop.mainQueue.advance(1ms);
    EXPECT_EQ(shown(), "You're Set | Done | ");
    EXPECT_FALSE(partOfStep);
    EXPECT_EQ(desktop.mainQueue.pendingCount(), 0U) << "there is nothing left to look for";
}

TEST_F(OnboardingWindowTest, ClosingItAtAnyStepEndsTheGuideOnce) {
    desktop.accessibility.isTrusted = false;
    for (const int step : {0, 1, 2}) {
        SCOPED_TRACE(step);
        open();
        if (step > 0) {
            press(Qt::Key_Return);
        }
        if (step > 1) {
            desktop.accessibility.isTrusted = true;
            desktop.mainQueue.advance(500ms);
            ASSERT_EQ(buttonTitle(), "Done");
        }
        timesFinished = 0;
        window->close();
        EXPECT_EQ(timesFinished, 1);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        desktop.mainQueue.advance(1s); // a look for the permission would find a window that has gone
        EXPECT_EQ(timesFinished, 1);
        EXPECT_EQ(desktop.mainQueue.pendingCount(), 0U);
    }
}

TEST_F(OnboardingWindowTest, ReleasedOpenItGoesWithoutEndingTheGuide) {
    open();
    guide.reset();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_FALSE(window);
    EXPECT_EQ(timesFinished, 0);
}

TEST_F(OnboardingWindowTest, TheLastStepNamesShortcutsAndTheProductPage) {
    struct Row {
        std::string address;
        std::string opened;
        std::string label;
    };
    for (const Row& row : {
             Row{"https://brisk.example/product?a&b", "https://brisk.example/product?a&b", "brisk.example/product?a&b"},
             Row{"", "", ""},
             Row{"no address", "", ""},
         }) {
        SCOPED_TRACE(row.address);
        open(row.address);
        press(Qt::Key_Return);
        press(Qt::Key_Return);
        QApplication::processEvents();
        std::vector<std::string> keys;
        for (KeyCap* key : window->findChildren<KeyCap*>()) {
            keys.push_back(key->text().toStdString());
            EXPECT_EQ(QAccessible::queryAccessibleInterface(key)->role(), QAccessible::StaticText);
            EXPECT_EQ(key->size(), QSize(70, 26));
        }
        EXPECT_THAT(keys, ElementsAre("⌃⌥◀", "⌃⌥▶", "⌃⌥↵", "⌃⌥C", "⌃⌥⌫"));

        desktop.log.clear();
        auto* const link = window->findChild<QPushButton*>("productPage");
        ASSERT_EQ(link != nullptr, !row.opened.empty());
        if (link != nullptr) {
            EXPECT_EQ(link->accessibleName().toStdString(), row.label);
            press(Qt::Key_Tab);
            EXPECT_TRUE(link->hasFocus());
            QTest::keyClick(link, Qt::Key_Space);
            EXPECT_THAT(desktop.log.calls(), ElementsAre("openURL " + row.opened));
            EXPECT_EQ(buttonTitle(), "Done") << "the window stays";
        }
        press(Qt::Key_Return);
        EXPECT_EQ(guide, nullptr) << "Return is the button's wherever the focus is";
    }
}

/// Everything that is shown in the window, without what only holds other widgets.
std::vector<const QWidget*> shownLeaves(const QWidget& window) {
    std::vector<const QWidget*> leaves;
    for (const QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->isVisible() && widget->findChildren<QWidget*>().isEmpty()) {
            leaves.push_back(widget);
        }
    }
    return leaves;
}

QRect inWindow(const QWidget& widget) {
    return {widget.mapTo(widget.window(), QPoint()), widget.size()};
}

TEST_F(OnboardingWindowTest, KeepsItsMeasuresInBothDirections) {
    desktop.accessibility.isTrusted = false;
    for (const Qt::LayoutDirection direction : {Qt::LeftToRight, Qt::RightToLeft}) {
        SCOPED_TRACE(direction == Qt::LeftToRight ? "left to right" : "right to left");
        QApplication::setLayoutDirection(direction);
        open();
        for (const char* const title : {"Welcome to Brisk", "Permission", "You're Set"}) {
            SCOPED_TRACE(title);
            QApplication::processEvents();
            ASSERT_EQ(window->windowTitle(), title);
            EXPECT_EQ(window->size(), QSize(480, 430));
            auto* const button = window->findChild<QPushButton*>("primaryButton");
            const QRect buttonPlace = inWindow(*button);
            EXPECT_EQ(window->height() - buttonPlace.y() - buttonPlace.height(), 20);
            EXPECT_EQ(direction == Qt::LeftToRight ? 480 - buttonPlace.x() - buttonPlace.width() : buttonPlace.x(), 24);
            EXPECT_GE(buttonPlace.width(), std::max(110, button->sizeHint().width()));

            QRect step;
            for (const QWidget* leaf : shownLeaves(*window)) {
                EXPECT_GE(leaf->width(), leaf->sizeHint().width() > 372 ? 372 : leaf->sizeHint().width());
                const bool isInRow = leaf == button || leaf->objectName() == "status";
                step = isInRow ? step : step.united(inWindow(*leaf));
                for (const QWidget* other : shownLeaves(*window)) {
                    EXPECT_TRUE(leaf == other || !inWindow(*leaf).intersects(inWindow(*other)));
                }
            }
            EXPECT_NEAR(step.y() + step.height() / 2.0, 215 - 16, 1);
            EXPECT_GE(step.left(), 36);
            EXPECT_LE(step.right(), 480 - 36);
            desktop.accessibility.isTrusted = window->windowTitle() == "Permission";
            press(Qt::Key_Return);
        }
    }
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

} // namespace
} // namespace brisk
