#include "ui/settings_window.h"

#include "ui/about_view.h"
#include "ui/person.h"
#include "ui/settings_window_rig.h"
#include "ui/text_label.h"

#include <QAccessible>
#include <QCheckBox>
#include <QGuiApplication>
#include <QScrollArea>
#include <QScrollBar>
#include <QSet>
#include <QSpinBox>
#include <QTabBar>
#include <QTest>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brisk {
namespace {

using testing::Contains;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::Not;

class SettingsWindowTest : public testing::Test {
protected:
    void show(SettingsPane pane) {
        rig.controller.show(pane);
        showActive(window());
    }
    QWidget& window() { return rig.controller.window(); }
    void click(const char* control) { QTest::mouseClick(rig.control(control), Qt::LeftButton); }
    int contentHeightNow() { return rig.control<QScrollArea>("")->parentWidget()->height(); }
    bool showsText(const QString& text) {
        for (const QLabel* label : window().findChildren<QLabel*>()) {
            if (label->isVisibleTo(&window()) && label->text() == text) {
                return true;
            }
        }
        return false;
    }
    void typeGap(const char* text) {
        auto* const field = rig.control<QLineEdit>("windowGapField");
        field->setFocus();
        field->selectAll();
        QTest::keyClick(field, Qt::Key_Delete);
        // Signs beyond ASCII are pasted.
        field->insert(QString::fromUtf8(text));
        field->setModified(true);
    }

    SettingsWindowRig rig;
};

TEST_F(SettingsWindowTest, TheToolbarLeadsToThePanes) {
    show(SettingsPane::general);
    auto* const toolbar = rig.control<QTabBar>("toolbar");
    struct Row {
        int item;
        const char* title;
        int height;
    };
    const QPoint topLeft = window().pos();
    for (const Row& row : {Row{1, "Windows \u2014 Brisk Settings", 590}, Row{2, "Sync \u2014 Brisk Settings", 250},
                           Row{3, "About \u2014 Brisk Settings", 470}, Row{0, "General \u2014 Brisk Settings", 380}}) {
        SCOPED_TRACE(row.title);
        QTest::mouseClick(toolbar, Qt::LeftButton, {}, toolbar->tabRect(row.item).center());
        EXPECT_EQ(window().windowTitle(), QString::fromUtf8(row.title));
        EXPECT_TRUE(QTest::qWaitFor([&] { return contentHeightNow() == row.height; }, 2000)) << contentHeightNow();
        EXPECT_EQ(window().pos(), topLeft) << "the top edge stays";
        EXPECT_EQ(window().width(), 720);
    }
    toolbar->setFocus();
    QTest::keyClick(toolbar, Qt::Key_Right);
    EXPECT_EQ(window().windowTitle(), QStringLiteral("Windows \u2014 Brisk Settings"));
}

TEST_F(SettingsWindowTest, ReturnsToTheLastPaneThatConfigures) {
    show(SettingsPane::about);
    EXPECT_EQ(rig.controller.lastConfigurationPane(), SettingsPane::general);
    show(SettingsPane::sync);
    show(SettingsPane::about);
    EXPECT_EQ(window().windowTitle(), QStringLiteral("About \u2014 Brisk Settings"));
    window().close();
    EXPECT_EQ(rig.timesClosed, 1);
    show(rig.controller.lastConfigurationPane());
    EXPECT_TRUE(window().isVisible());
    EXPECT_EQ(window().windowTitle(), QStringLiteral("Sync \u2014 Brisk Settings"));
}

TEST_F(SettingsWindowTest, TheGapIsTyped) {
    show(SettingsPane::windows);
    struct Row {
        const char* typed;
        int stored;
        bool isChange;
    };
    for (const Row& row : {Row{"12", 12, true}, Row{"abc", 12, false}, Row{"", 12, false}, Row{"100", 64, true},
                           Row{"-5", 0, true}, Row{"7", 7, true}, Row{"\u22125", 0, true}}) {
        SCOPED_TRACE(row.typed);
        for (const bool byReturn : {true, false}) {
            const int before = rig.timesChanged;
            typeGap(row.typed);
            auto* const field = rig.control<QLineEdit>("windowGapField");
            if (byReturn) {
                QTest::keyClick(field, Qt::Key_Return);
            } else {
                QTest::keyClick(field, Qt::Key_Tab);
            }
            EXPECT_EQ(rig.stored().windowGap, row.stored);
            EXPECT_EQ(field->text(), QString::number(row.stored));
            EXPECT_EQ(rig.control<QSpinBox>("windowGapStepper")->value(), row.stored);
            EXPECT_EQ(rig.timesChanged - before, row.isChange ? 1 : 0);
        }
    }
    const int before = rig.timesChanged;
    rig.control<QLineEdit>("windowGapField")->setFocus();
    rig.control<QSpinBox>("windowGapStepper")->setFocus();
    EXPECT_EQ(rig.timesChanged, before) << "passing through changes nothing";
}

TEST_F(SettingsWindowTest, TheGapIsSteppedAndItsControlsOutliveThePane) {
    show(SettingsPane::windows);
    const QWidget* const field = rig.control("windowGapField");
    for (const int round : {1, 2, 3}) {
        show(SettingsPane::sync);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        show(SettingsPane::windows);
        EXPECT_EQ(rig.control("windowGapField"), field);
        QTest::keyClick(rig.control("windowGapStepper"), Qt::Key_Up);
        EXPECT_EQ(rig.stored().windowGap, round);
        EXPECT_EQ(rig.control<QLineEdit>("windowGapField")->text(), QString::number(round));
        EXPECT_EQ(rig.timesChanged, round);
    }
    QTest::keyClicks(rig.control("windowGapStepper"), "9");
    EXPECT_EQ(rig.stored().windowGap, 3) << "nothing is typed into the stepper";
}

TEST_F(SettingsWindowTest, AGapStillBeingTypedIsNotLost) {
    show(SettingsPane::windows);
    typeGap("21");
    show(SettingsPane::sync);
    EXPECT_EQ(rig.stored().windowGap, 21);
    show(SettingsPane::windows);
    typeGap("22");
    window().close();
    EXPECT_EQ(rig.stored().windowGap, 22);
    EXPECT_EQ(rig.timesChanged, 2);
}

TEST_F(SettingsWindowTest, DragTargetsAreSwitched) {
    show(SettingsPane::windows);
    EXPECT_EQ(rig.control("drag.window.restore"), nullptr);
    click("drag.window.topHalf");
    click("drag.window.leftHalf");
    EXPECT_THAT(rig.stored().dragEnabledBuiltInWindowLayoutIDs, ElementsAre("window.leftHalf", "window.topHalf"));
    QTest::keyClick(rig.control("drag.window.topHalf"), Qt::Key_Space);
    EXPECT_THAT(rig.stored().dragEnabledBuiltInWindowLayoutIDs, ElementsAre("window.leftHalf"));
    EXPECT_EQ(rig.timesChanged, 3);
}

TEST_F(SettingsWindowTest, CustomLayoutsAreRemovedAtOnce) {
    rig.addLayouts(3);
    rig.store.settings.commandHotkeys["window.custom.id1"] = {.keyCode = 1, .modifiers = cmdKey, .display = "\u2318S"};
    show(SettingsPane::windows);
    rig.control("remove.window.custom.id1")->setFocus();
    const int scrolled = rig.control<QScrollArea>("")->verticalScrollBar()->value();
    QTest::keyClick(rig.control("remove.window.custom.id1"), Qt::Key_Space);
    EXPECT_EQ(rig.stored().customWindowLayouts.size(), 2U);
    EXPECT_THAT(rig.stored().commandHotkeys, Not(Contains(testing::Key("window.custom.id1"))));
    EXPECT_EQ(rig.control("remove.window.custom.id1"), nullptr);
    EXPECT_FALSE(showsText("Layout 2"));
    EXPECT_TRUE(showsText("Layout 3"));
    EXPECT_EQ(rig.timesChanged, 1);
    EXPECT_TRUE(rig.alerts.alerts.empty());
    EXPECT_EQ(window().focusWidget(), rig.control("remove.window.custom.id2")) << "the next one, for the keyboard";
    EXPECT_EQ(rig.control<QScrollArea>("")->verticalScrollBar()->value(), scrolled);

    click("remove.window.custom.id2");
    click("remove.window.custom.id0");
    EXPECT_THAT(rig.stored().customWindowLayouts, IsEmpty());
    EXPECT_EQ(window().focusWidget(), rig.control("addLayout"));
}

TEST_F(SettingsWindowTest, CustomLayoutsAreAddedAndEditedInADialog) {
    rig.addLayouts(1);
    show(SettingsPane::windows);
    rig.isEditSaved = false;
    click("addLayout");
    EXPECT_EQ(rig.timesChanged, 0) << "cancelled";
    rig.isEditSaved = true;
    rig.store.settings.customWindowLayouts.front().name = "Renamed meanwhile";
    click("edit.window.custom.id0");
    EXPECT_EQ(rig.timesChanged, 1);
    EXPECT_TRUE(showsText("Renamed meanwhile")) << "the pane is built anew";
    ASSERT_EQ(rig.edited.size(), 2U);
    EXPECT_EQ(rig.edited[0], std::nullopt);
    EXPECT_EQ(rig.edited[1]->name, "Layout 1") << "the layout as it was shown";
}

TEST_F(SettingsWindowTest, ShortcutsAreRecordedRefusedAndCleared) {
    show(SettingsPane::windows);
    const auto binding = rig.store.settings.commandHotkeys.at("window.leftHalf");
    click("recorder.window.center");
    pressKey(window(), binding.keyCode, controlOption);
    EXPECT_EQ(rig.control<QPushButton>("recorder.window.center")->text(), "Used by Left Half");
    EXPECT_EQ(rig.timesChanged, 0);
    show(SettingsPane::windows);

    constexpr std::uint32_t keyX = 7;
    click("recorder.window.center");
    pressKey(window(), keyX, controlOption);
    EXPECT_EQ(rig.stored().commandHotkeys.at("window.center").keyCode, keyX);
    EXPECT_EQ(rig.timesChanged, 1);

    constexpr std::uint32_t keyDelete = 51;
    click("recorder.window.center");
    pressKey(window(), keyDelete, 0);
    EXPECT_THAT(rig.stored().commandHotkeys, Not(Contains(testing::Key("window.center"))));
    EXPECT_THAT(rig.stored().disabledCommandHotkeys, ElementsAre("window.center"));
    EXPECT_EQ(rig.timesChanged, 2);
}

TEST_F(SettingsWindowTest, GeneralIsFreshWhenTheUserComesBack) {
    rig.desktop.accessibility.isTrusted = false;
    show(SettingsPane::general);
    EXPECT_TRUE(showsText("Not Allowed"));
    click("openAccessibilitySettings");
    EXPECT_THAT(rig.desktop.log.calls(), Contains("openURL " + std::string(accessibilityPrivacySettingsLink)));

    rig.control("openAccessibilitySettings")->setFocus();
    const QWidget* const shown = rig.control("openAccessibilitySettings");
    emit qApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_EQ(rig.control("openAccessibilitySettings"), shown) << "nothing has changed, nothing moves";
    rig.desktop.accessibility.isTrusted = true;
    emit qApp->applicationStateChanged(Qt::ApplicationActive);
    EXPECT_TRUE(showsText("Allowed"));
    EXPECT_FALSE(showsText("Not Allowed"));
    EXPECT_EQ(window().focusWidget(), rig.control("openAccessibilitySettings")) << "the focus stays where it was";
}

TEST_F(SettingsWindowTest, TheLoginItemIsShownAndLeadsToItsApproval) {
    struct Row {
        LoginItemStatus status;
        bool isOn;
        bool needsApproval;
    };
    for (const Row& row :
         {Row{LoginItemStatus::notRegistered, false, false}, Row{LoginItemStatus::notFound, false, false},
          Row{LoginItemStatus::enabled, true, false}, Row{LoginItemStatus::requiresApproval, true, true}}) {
        SCOPED_TRACE(static_cast<int>(row.status));
        rig.loginItem.currentStatus = row.status;
        show(SettingsPane::general);
        EXPECT_EQ(rig.control<QCheckBox>("opensAtLogin")->isChecked(), row.isOn);
        EXPECT_EQ(rig.control("openLoginItems") != nullptr, row.needsApproval);
        EXPECT_EQ(showsText("Approval is required in System Settings \u2192 General \u2192 Login Items."),
                  row.needsApproval);
    }
    click("openLoginItems");
    EXPECT_THAT(rig.desktop.log.calls(), Contains("openSystemSettingsLoginItems"));
}

TEST_F(SettingsWindowTest, TheLoginItemIsSwitchedOrSwitchesBack) {
    show(SettingsPane::general);
    const auto isSwitchOn = [&] { return rig.control<QCheckBox>("opensAtLogin")->isChecked(); };
    click("opensAtLogin");
    EXPECT_EQ(rig.loginItem.currentStatus, LoginItemStatus::enabled);
    EXPECT_TRUE(isSwitchOn());
    click("opensAtLogin");
    EXPECT_EQ(rig.loginItem.currentStatus, LoginItemStatus::notRegistered);
    EXPECT_FALSE(isSwitchOn());

    rig.loginItem.error = "The disk is full.";
    bool wasOnBehindAlert = true;
    rig.alerts.whileOpen = [&] { wasOnBehindAlert = isSwitchOn(); };
    click("opensAtLogin");
    ASSERT_EQ(rig.alerts.alerts.size(), 1U);
    EXPECT_EQ(rig.alerts.alerts.front().messageText, "Could not turn on Open at Login");
    EXPECT_FALSE(wasOnBehindAlert);
    EXPECT_FALSE(isSwitchOn());
    EXPECT_EQ(rig.timesChanged, 0) << "it is no setting of ours";
}

TEST_F(SettingsWindowTest, TheSettingsFileIsShownAndItsPathCopied) {
    show(SettingsPane::sync);
    EXPECT_TRUE(showsText("Local Application Support"));
    click("revealSettingsFile");
    EXPECT_THAT(rig.desktop.log.calls(), Contains("selectFile " + rig.store.fileURL().string()));
    click("copySettingsPath");
    EXPECT_EQ(rig.pasteboard.contents, rig.store.fileURL().string());
}

TEST_F(SettingsWindowTest, AboutShowsVersionAndAcknowledgements) {
    rig.bundle.infoDictionary = {{"CFBundleShortVersionString", "1.2"}, {"CFBundleVersion", "45"}};
    show(SettingsPane::about);
    EXPECT_TRUE(showsText("Version 1.2 (Build 45)"));
    click("acknowledgements");
    ASSERT_EQ(rig.alerts.alerts.size(), 1U);
    EXPECT_EQ(rig.alerts.alerts.front().messageText, "Acknowledgements");
    EXPECT_FALSE(rig.alerts.alerts.front().informativeText.empty());
}

TEST(AboutView, OnlyAWebAddressCanBeOpened) {
    struct Row {
        const char* address;
        bool opens;
    };
    for (const Row& row : {Row{"https://brisk.example/a b", false}, Row{"https://brisk.example/", true}, Row{"", false},
                           Row{"brisk.example", false}, Row{"file:///etc/passwd", false}}) {
        SCOPED_TRACE(row.address);
        std::vector<std::string> opened;
        BriskAboutView view(
            {.version = "1", .websiteAddress = row.address, .makerLine = "Us"},
            {.openWebsite = [&](const std::string& url) { opened.push_back(url); }, .showAcknowledgements = nullptr});
        auto* const website = view.findChild<QPushButton*>("website");
        EXPECT_EQ(website->isEnabled(), row.opens);
        QTest::mouseClick(website, Qt::LeftButton);
        EXPECT_EQ(opened.size(), row.opens ? 1U : 0U);
    }
}

QList<QWidget*> visibleControls(QWidget& window) {
    QList<QWidget*> controls;
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (widget->isVisibleTo(&window) && widget->isEnabled() && (widget->focusPolicy() & Qt::TabFocus) != 0) {
            controls.append(widget);
        }
    }
    return controls;
}

TEST_F(SettingsWindowTest, EveryControlSpeaksAndIsReachedByKeyboard) {
    rig.addLayouts(2);
    rig.loginItem.currentStatus = LoginItemStatus::requiresApproval;
    for (const SettingsPane pane : allSettingsPanes) {
        SCOPED_TRACE(title(pane));
        show(pane);
        const QList<QWidget*> controls = visibleControls(window());
        EXPECT_GT(controls.size(), 1);
        for (QWidget* control : controls) {
            SCOPED_TRACE(control->objectName().toStdString());
            EXPECT_FALSE(control->objectName().isEmpty());
            QAccessibleInterface* const spoken = QAccessible::queryAccessibleInterface(control);
            ASSERT_NE(spoken, nullptr);
            EXPECT_FALSE(spoken->text(QAccessible::Name).isEmpty());
            EXPECT_NE(spoken->role(), QAccessible::Client);
            EXPECT_NE(spoken->role(), QAccessible::NoRole);
            if (const auto* const box = qobject_cast<QCheckBox*>(control)) {
                EXPECT_EQ(spoken->role(), QAccessible::CheckBox);
                EXPECT_EQ(spoken->state().checked, box->isChecked() ? 1U : 0U);
            }
        }
        QSet<QWidget*> reached;
        controls.front()->setFocus();
        for (qsizetype i = 0; i < controls.size(); ++i) {
            reached.insert(window().focusWidget());
            QTest::keyClick(window().focusWidget(), Qt::Key_Tab);
        }
        for (QWidget* control : controls) {
            EXPECT_TRUE(reached.contains(control)) << control->objectName().toStdString();
        }
    }
    show(SettingsPane::windows);
    EXPECT_EQ(QAccessible::queryAccessibleInterface(rig.control("remove.window.custom.id1"))->text(QAccessible::Name),
              "Remove, Layout 2");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&window())->role(), QAccessible::Window);
    for (TextLabel* const text : window().findChildren<TextLabel*>()) {
        EXPECT_EQ(QAccessible::queryAccessibleInterface(text)->text(QAccessible::Name), text->text());
    }
}

/// No widget leaves its parent or lies on its neighbour, and every control has the room it asks for.
void expectNothingClipped(QWidget& window) {
    for (QWidget* widget : window.findChildren<QWidget*>()) {
        if (!widget->isVisibleTo(&window) || widget->parentWidget()->objectName() == "qt_scrollarea_viewport" ||
            widget->objectName().startsWith("qt_") || qobject_cast<QSpinBox*>(widget->parentWidget()) != nullptr) {
            continue;
        }
        SCOPED_TRACE(widget->objectName().toStdString() + " " + widget->metaObject()->className() + " " +
                     widget->accessibleName().toStdString());
        EXPECT_TRUE(widget->parentWidget()->rect().contains(widget->geometry()));
        if ((widget->focusPolicy() & Qt::TabFocus) != 0) {
            EXPECT_GE(widget->height(), widget->minimumSizeHint().height());
            EXPECT_GE(widget->width(), std::min(widget->sizeHint().width(), widget->maximumWidth()));
        }
        if (widget->hasHeightForWidth()) {
            EXPECT_GE(widget->height(), widget->heightForWidth(widget->width()));
        }
        for (const QObject* other : widget->parentWidget()->children()) {
            const auto* const neighbour = qobject_cast<const QWidget*>(other);
            if (neighbour != nullptr && neighbour != widget && neighbour->isVisibleTo(&window)) {
                EXPECT_FALSE(neighbour->geometry().intersects(widget->geometry()))
                    << neighbour->metaObject()->className() << " " << neighbour->objectName().toStdString();
            }
        }
    }
}

TEST(SettingsWindowLayout, NothingIsClippedWhateverTheTextsAndTheirSize) {
    struct Row {
        const char* why;
        Qt::LayoutDirection direction;
        double fontScale;
        std::string name;
    };
    const QFont usual = QApplication::font();
    for (const Row& row :
         {Row{"as it comes", Qt::LeftToRight, 1, "Layout"}, Row{"large text", Qt::LeftToRight, 1.5, "Layout"},
          Row{"right to left", Qt::RightToLeft, 1, "Layout"},
          Row{"a name without end", Qt::LeftToRight, 1.5, std::string(10'000, 'W')},
          Row{"a name of several lines", Qt::LeftToRight, 1, "One\nTwo\nThree"}}) {
        SCOPED_TRACE(row.why);
        QFont font = usual;
        font.setPointSizeF(usual.pointSizeF() * row.fontScale);
        QApplication::setFont(font);
        QApplication::setLayoutDirection(row.direction);
        SettingsWindowRig rig;
        rig.addLayouts(40, row.name);
        rig.loginItem.currentStatus = LoginItemStatus::requiresApproval;
        for (const SettingsPane pane : allSettingsPanes) {
            SCOPED_TRACE(title(pane));
            rig.controller.show(pane);
            QTest::qWait(1);
            expectNothingClipped(rig.controller.window());
        }
    }
    QApplication::setFont(usual);
    QApplication::setLayoutDirection(Qt::LeftToRight);
}

} // namespace
} // namespace brisk
