#include "ui/menu_view.h"

#include "app/main_menu.h"
#include "app/status_menu.h"

#include <QApplication>
#include <QPointer>
#include <QTest>
#include <QWidget>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <stdexcept>
#include <string>
#include <vector>

namespace brisk {
namespace {

using testing::ElementsAre;

/// What a user sees of a menu, one line an item.
std::vector<std::string> seen(const QMenu& menu) {
    std::vector<std::string> lines;
    for (const QAction* action : menu.actions()) {
        if (!action->isVisible()) {
            continue;
        }
        std::string line = action->isSeparator() ? "-" : action->text().toStdString();
        if (!action->shortcut().isEmpty()) {
            line += " [" + action->shortcut().toString(QKeySequence::PortableText).toStdString() + "]";
        }
        lines.push_back(line + (action->menu() != nullptr ? " >" : "") + (action->isEnabled() ? "" : " (disabled)"));
    }
    return lines;
}

QAction& actionNamed(const QMenu& menu, const QString& text) {
    for (QAction* action : menu.actions()) {
        if (action->text() == text) {
            return *action;
        }
    }
    throw std::out_of_range(text.toStdString());
}

Menu menuWithCustomLayouts(const std::vector<std::string>& names) {
    AppSettings settings;
    for (const std::string& name : names) {
        settings.customWindowLayouts.push_back({.id = name, .name = name});
    }
    settings.commandHotkeys["window.custom." + names.front()] = {
        .keyCode = 40, .modifiers = 256 | 512, .display = "⇧⌘K"};
    return statusMenu(&settings);
}

TEST(MenuShortcut, NamesTheKeyThatIsPressed) {
    struct Row {
        const char* why;
        MenuItem item;
        const char* expected;
    };
    const auto command = [](const char* key, NSEventModifierFlags modifiers) {
        return MenuItem{
            .action = MenuAction::runWindowCommand, .keyEquivalent = key, .keyEquivalentModifierMask = modifiers};
    };
    const NSEventModifierFlags all =
        NSEventModifierFlagControl | NSEventModifierFlagOption | NSEventModifierFlagShift | NSEventModifierFlagCommand;
    for (const Row& row : {
             Row{"every modifier of a system-wide key", command("k", all), "Meta+Ctrl+Alt+Shift+K"},
             Row{"Command is Ctrl in a program's own shortcuts", settingsItem(), "Ctrl+,"},
             Row{"and once, with Control beside it",
                 {.action = MenuAction::quit, .keyEquivalent = "q", .keyEquivalentModifierMask = all},
                 "Ctrl+Alt+Shift+Q"},
             Row{"arrows", command("\uF702", NSEventModifierFlagOption), "Alt+Left"},
             Row{"", command("\uF700", 0), "Up"},
             Row{"first and last function key", command("\uF704", 0), "F1"},
             Row{"", command("\uF726", 0), "F35"},
             Row{"deleting backwards and forwards", command("\b", 0), "Backspace"},
             Row{"", command("\uF728", 0), "Del"},
             Row{"the two Enter keys", command("\r", 0), "Return"},
             Row{"", command("\x03", 0), "Enter"},
             Row{"space", command(" ", NSEventModifierFlagControl), "Ctrl+Space"},
             Row{"a letter that is not ASCII", command("ö", NSEventModifierFlagCommand), "Meta+Ö"},
             Row{"no key", command("", all), ""},
             Row{"text that names no single key", command("left", all), ""},
             Row{"a private-use character that names none", command("\uF8FF", all), ""},
         }) {
        SCOPED_TRACE(row.why + std::string(" ") + row.item.keyEquivalent);
        EXPECT_EQ(shortcutOf(row.item).toString(QKeySequence::PortableText).toStdString(), row.expected);
    }
}

TEST(MenuView, ShowsTheMenuAsItIs) {
    MenuView view(MenuView::Shortcuts::shown, [](const MenuItem&) {});
    view.setContents(menuWithCustomLayouts({"Wide & low", "One\ttwo"}));
    const auto lines = seen(view.menu());
    EXPECT_THAT(std::vector(lines.begin(), lines.begin() + 3),
                ElementsAre("Window Layouts (disabled)", "Left Half [Ctrl+Alt+Left]", "Right Half [Ctrl+Alt+Right]"));
    EXPECT_THAT(std::vector(lines.begin() + 14, lines.end()),
                ElementsAre("Restore Window [Ctrl+Alt+Backspace]", "-", "Custom Layouts >", "-", "Settings… [Ctrl+,]",
                            "About Brisk", "Check for Updates…", "-", "Quit Brisk [Ctrl+Q]"));
    EXPECT_THAT(seen(*actionNamed(view.menu(), QStringLiteral("Custom Layouts")).menu()),
                ElementsAre("Wide && low [Meta+Shift+K]", "One two"))
        << "no mnemonic, no shortcut column of its own making";

    view.setContents(statusMenu(nullptr));
    EXPECT_THAT(seen(view.menu()), testing::Not(testing::Contains("Custom Layouts >")));
}

TEST(MenuView, ReportsTheChosenItemOnceTheMenuIsThroughWithIt) {
    std::vector<std::string> chosen;
    MenuView view(MenuView::Shortcuts::shown, [&](const MenuItem& item) { chosen.push_back(*item.representedObject); });
    view.setContents(menuWithCustomLayouts({"A"}));
    actionNamed(view.menu(), QStringLiteral("Center")).trigger();
    actionNamed(*actionNamed(view.menu(), QStringLiteral("Custom Layouts")).menu(), QStringLiteral("A")).trigger();
    EXPECT_THAT(chosen, ElementsAre());
    QCoreApplication::processEvents();
    EXPECT_THAT(chosen, ElementsAre("window.center", "window.custom.A"));
}

TEST(MenuView, TakesNewContentsWhileOpenAndUnderItsOwnSignals) {
    MenuView view(MenuView::Shortcuts::shown, [](const MenuItem&) {});
    view.setContents(menuWithCustomLayouts({"A"}));
    const auto replace = [&] {
        view.setContents(statusMenu(nullptr));
        view.setContents(menuWithCustomLayouts({"B"}));
    };
    QObject::connect(&view.menu(), &QMenu::aboutToShow, &view, replace);
    view.menu().popup({10, 10});
    EXPECT_TRUE(view.menu().isVisible());
    const QPointer<QAction> center = &actionNamed(view.menu(), QStringLiteral("Center"));
    QObject::connect(center, &QAction::triggered, &view, replace);
    center->trigger();
    QObject::connect(&view.menu(), &QMenu::aboutToHide, &view, replace);
    view.menu().hide();
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_TRUE(center.isNull());
    EXPECT_THAT(seen(*actionNamed(view.menu(), QStringLiteral("Custom Layouts")).menu()),
                ElementsAre("B [Meta+Shift+K]"));
}

TEST(MenuView, KeepsItsItemsWhileNothingChanges) {
    MenuView view(MenuView::Shortcuts::shown, [](const MenuItem&) {});
    view.setContents(menuWithCustomLayouts({"A"}));
    const auto before = view.menu().actions();
    view.setContents(menuWithCustomLayouts({"A"}));
    EXPECT_EQ(view.menu().actions(), before);
}

TEST(MenuView, ActsOnShortcutsOnlyInAWindowsMenuBar) {
    for (const auto shortcuts : {MenuView::Shortcuts::shown, MenuView::Shortcuts::active}) {
        int chosen = 0;
        MenuView view(shortcuts, [&](const MenuItem&) { ++chosen; });
        view.setContents(mainMenu());
        QWidget window;
        window.addAction(view.menu().menuAction());
        window.show();
        QApplication::setActiveWindow(&window);
        QTest::keyClick(&window, Qt::Key_Q, Qt::ControlModifier);
        QCoreApplication::processEvents();
        EXPECT_EQ(chosen, shortcuts == MenuView::Shortcuts::active ? 1 : 0);
    }
}

} // namespace
} // namespace brisk
