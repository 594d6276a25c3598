#include "ui/custom_layout_editor.h"

#include "platform/simulated/desktop.h"
#include "support/temporary_folder.h"
#include "ui/person.h"
#include "ui/window_grid_selection_view.h"

#include <QAccessible>
#include <QCheckBox>
#include <QClipboard>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QLabel>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QTest>
#include <QTimer>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <functional>
#include <memory>

namespace brisk {
namespace {

/// The dialog, while it is open, as a person sees it.
class OpenDialog {
public:
    QDialog& window = *qobject_cast<QDialog*>(QApplication::activeModalWidget());

    QLineEdit& name() { return *window.findChild<QLineEdit*>(); }
    QComboBox& columns() { return *window.findChildren<QComboBox*>().at(0); }
    QComboBox& rows() { return *window.findChildren<QComboBox*>().at(1); }
    WindowGridSelectionView& grid() { return *window.findChild<WindowGridSelectionView*>(); }
    HotKeyRecorderView& shortcut() { return *window.findChild<HotKeyRecorderView*>(); }
    QCheckBox& dragTarget() { return *window.findChild<QCheckBox*>(); }

    bool shows(const QString& text) const {
        const auto labels = window.findChildren<QLabel*>();
        return std::ranges::any_of(labels, [&](const QLabel* label) { return label->text() == text; });
    }
    void type(const QString& text) {
        name().selectAll();
        QTest::keyClicks(&name(), text);
    }
    QPoint centre(GridPicker::Cell cell) { return grid().cellRect(cell).center().toPoint(); }
    void dragAcross(GridPicker::Cell from, GridPicker::Cell to) {
        QTest::mousePress(&grid(), Qt::LeftButton, {}, centre(from));
        QTest::mouseMove(&grid(), centre(to));
        QTest::mouseRelease(&grid(), Qt::LeftButton, {}, centre(to));
    }
    void record(std::uint32_t keyCode, NSEventModifierFlags flags) {
        QTest::mouseClick(&shortcut(), Qt::LeftButton);
        pressKey(window, keyCode, flags);
    }
    void press(QDialogButtonBox::StandardButton button) {
        QTest::mouseClick(window.findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
    }
    void save() { press(QDialogButtonBox::Save); }
    void cancel() { press(QDialogButtonBox::Cancel); }
};

class CustomLayoutEditorTest : public testing::Test {
protected:
    /// Opens the dialog, lets `act` use it and has it closed in any case; whether something was saved.
    bool edit(const std::optional<CustomWindowLayout>& existing, const std::function<void(OpenDialog&)>& act) {
        QTimer::singleShot(0, [&] {
            OpenDialog dialog;
            const QPointer<QDialog> window = &dialog.window;
            showActive(*window);
            act(dialog);
            if (window && window->isVisible()) {
                window->reject();
            }
        });
        return editCustomLayout(
            store, {.hotKeys = desktop.hotKeys, .keyInput = desktop.keyInput, .mainQueue = desktop.mainQueue}, existing,
            nullptr);
    }
    const std::vector<CustomWindowLayout>& layouts() const { return store.settings.customWindowLayouts; }

    const CustomWindowLayout thirds{.id = "A",
                                    .name = "Thirds",
                                    .selection = {.columns = 3, .rows = 2, .column = 1, .columnSpan = 2, .rowSpan = 2},
                                    .isAvailableForDragging = true};
    TemporaryFolder home;
    simulated::Desktop desktop;
    SettingsStore store{home.path() / "settings.json",
                        SettingsFolders{.home = home.path(), .applicationSupport = home.path() / "data"},
                        desktop.wallClock};
};

TEST_F(CustomLayoutEditorTest, ANewLayoutStartsAsTheWholeDisplay) {
    store.saveCustomLayout(thirds, std::nullopt);
    EXPECT_TRUE(edit(std::nullopt, [](OpenDialog& dialog) {
        EXPECT_EQ(dialog.window.windowTitle(), "Add Custom Window Layout");
        EXPECT_EQ(dialog.name().text(), "Custom Layout 2");
        EXPECT_TRUE(dialog.shows("4×4 area on a 4×4 grid"));
        EXPECT_EQ(dialog.columns().currentText() + dialog.rows().currentText(), "44");
        EXPECT_EQ(dialog.shortcut().text(), "Record Shortcut");
        EXPECT_FALSE(dialog.dragTarget().isChecked());
        dialog.save();
    }));
    ASSERT_EQ(layouts().size(), 2U);
    EXPECT_EQ(layouts()[1].name, "Custom Layout 2");
    EXPECT_EQ(layouts()[1].id.size(), 36U);
    EXPECT_EQ(layouts()[1].selection, (WindowGridSelection{.columns = 4, .rows = 4, .columnSpan = 4, .rowSpan = 4}));
}

TEST_F(CustomLayoutEditorTest, SavesWhatWasTypedDraggedAndRecorded) {
    store.saveCustomLayout(thirds, HotKeyBinding{.keyCode = 32, .modifiers = 6144, .display = "⌃⌥U"});
    EXPECT_TRUE(edit(thirds, [](OpenDialog& dialog) {
        EXPECT_EQ(dialog.window.windowTitle(), "Edit Custom Window Layout");
        EXPECT_EQ(dialog.shortcut().text(), "⌃⌥U");
        EXPECT_TRUE(dialog.shows("2×2 area on a 3×2 grid"));
        dialog.type("  Side  panel ");
        dialog.rows().setCurrentIndex(1);
        EXPECT_TRUE(dialog.shows("3×3 area on a 3×3 grid")) << "another grid is chosen whole";
        dialog.dragAcross({2, 2}, {1, 0});
        EXPECT_TRUE(dialog.shows("2×3 area on a 3×3 grid"));
        dialog.record(16, controlOption);
        QTest::mouseClick(&dialog.dragTarget(), Qt::LeftButton, {}, {8, dialog.dragTarget().height() / 2});
        dialog.save();
    }));
    EXPECT_EQ(layouts(), std::vector{(CustomWindowLayout{
                             .id = "A",
                             .name = "Side  panel",
                             .selection = {.columns = 3, .rows = 3, .column = 1, .columnSpan = 2, .rowSpan = 3}})});
    EXPECT_EQ(store.settings.commandHotkeys.at("window.custom.A").display, "⌃⌥Y");
}

TEST_F(CustomLayoutEditorTest, WhateverElseClosesItSavesNothing) {
    store.saveCustomLayout(thirds, HotKeyBinding{.keyCode = 32, .modifiers = 6144, .display = "⌃⌥U"});
    const AppSettings before = store.settings;
    for (const auto& close : std::vector<std::function<void(OpenDialog&)>>{
             [](OpenDialog& dialog) { dialog.cancel(); },
             [](OpenDialog& dialog) { QTest::keyClick(&dialog.window, Qt::Key_Escape); },
             [](OpenDialog& dialog) { dialog.window.close(); },
             [](OpenDialog& dialog) { QTest::mouseClick(&dialog.shortcut(), Qt::LeftButton); }, // gone while recording
         }) {
        EXPECT_FALSE(edit(thirds, [&](OpenDialog& dialog) {
            dialog.type("Other");
            dialog.columns().setCurrentIndex(4);
            dialog.record(51, 0);
            EXPECT_EQ(dialog.shortcut().text(), "Record Shortcut");
            close(dialog);
        }));
        EXPECT_EQ(store.settings, before);
        EXPECT_FALSE(desktop.hotKeys.isSuspended());
    }
}

TEST_F(CustomLayoutEditorTest, RefusesAShortcutThatAnotherCommandHas) {
    store.saveCustomLayout(thirds, std::nullopt);
    EXPECT_TRUE(edit(thirds, [&](OpenDialog& dialog) {
        dialog.record(123, controlOption);
        EXPECT_EQ(dialog.shortcut().text(), "Used by Left Half");
        EXPECT_TRUE(dialog.window.isVisible());
        QTest::keyClick(&dialog.name(), Qt::Key_Return);
    })) << "Return saves";
    EXPECT_FALSE(store.settings.commandHotkeys.contains("window.custom.A"));
}

TEST_F(CustomLayoutEditorTest, TakesNamesOfAnyKind) {
    struct Row {
        const char* why;
        std::string pasted;
        std::string saved;
    };
    for (const Row& row : {
             Row{"ten thousand characters", std::string(10000, 'n'), std::string(10000, 'n')},
             Row{"a paragraph becomes a line", "Two\nlines", "Two lines"},
             Row{"emoji and right to left", "חלון 👩‍💻 نافذة", "חלון 👩‍💻 نافذة"},
             Row{"mark-up and mnemonics are text", "<b>R&D</b>", "<b>R&D</b>"},
             Row{"blank: the next default, not the old name", " \n ", "Custom Layout 2"},
         }) {
        SCOPED_TRACE(row.why);
        store.saveCustomLayout(thirds, std::nullopt);
        EXPECT_TRUE(edit(thirds, [&](OpenDialog& dialog) {
            const QSize size = dialog.window.size();
            dialog.name().selectAll();
            QApplication::clipboard()->setText(QString::fromStdString(row.pasted));
            dialog.name().paste();
            QApplication::processEvents();
            EXPECT_EQ(dialog.window.size(), size);
            dialog.save();
        }));
        EXPECT_EQ(layouts().front().name, row.saved);
    }
    CustomWindowLayout stored = thirds;
    stored.name = "Two\nlines";
    store.saveCustomLayout(stored, std::nullopt);
    EXPECT_TRUE(edit(stored, [](OpenDialog& dialog) { dialog.save(); }));
    EXPECT_EQ(layouts().front(), stored) << "a stored name that was not touched stays as it is";
}

TEST_F(CustomLayoutEditorTest, AGridOfOneShowsNoSizeUntilAnotherIsChosen) {
    CustomWindowLayout column = thirds;
    column.selection = {.columns = 1, .rows = 3, .rowSpan = 2};
    store.saveCustomLayout(column, std::nullopt);
    EXPECT_TRUE(edit(column, [](OpenDialog& dialog) {
        EXPECT_EQ(dialog.columns().currentIndex(), -1);
        EXPECT_TRUE(dialog.shows("1×2 area on a 1×3 grid"));
        dialog.save();
    }));
    EXPECT_EQ(layouts().front(), column) << "and is saved as it is";
    EXPECT_TRUE(edit(column, [](OpenDialog& dialog) {
        dialog.rows().setCurrentIndex(0);
        EXPECT_EQ(dialog.columns().currentText(), "4");
        dialog.save();
    }));
    EXPECT_EQ(layouts().front().selection,
              (WindowGridSelection{.columns = 4, .rows = 2, .columnSpan = 4, .rowSpan = 2}));
}

TEST_F(CustomLayoutEditorTest, FieldsSayWhatTheyAreFor) {
    edit(thirds, [](OpenDialog& dialog) {
        const auto labelOf = [](QWidget& field) {
            const auto related = QAccessible::queryAccessibleInterface(&field)->relations(QAccessible::Label);
            return related.isEmpty() ? QString() : related.first().first->text(QAccessible::Name);
        };
        EXPECT_EQ(labelOf(dialog.name()), "Name");
        EXPECT_EQ(labelOf(dialog.columns()), "Columns");
        EXPECT_EQ(labelOf(dialog.rows()), "Rows");
        EXPECT_EQ(labelOf(dialog.shortcut()), "Shortcut");
    });
}

TEST_F(CustomLayoutEditorTest, TheGridWorksFromTheKeyboard) {
    edit(thirds, [](OpenDialog& dialog) {
        WindowGridSelectionView& grid = dialog.grid();
        QAccessibleInterface* const accessible = QAccessible::queryAccessibleInterface(&grid);
        EXPECT_EQ(accessible->text(QAccessible::Value), "2×2 area on a 3×2 grid, columns 2 to 3, rows 1 to 2");
        grid.setFocus(Qt::TabFocusReason);
        const QImage focused = grid.grab().toImage();
        QTest::keyClick(&grid, Qt::Key_Left);
        QTest::keyClick(&grid, Qt::Key_Up, Qt::ShiftModifier);
        EXPECT_EQ(grid.selection(), (WindowGridSelection{.columns = 3, .rows = 2, .columnSpan = 2, .rowSpan = 1}));
        EXPECT_TRUE(dialog.shows("2×1 area on a 3×2 grid"));
        EXPECT_EQ(accessible->text(QAccessible::Value), "2×1 area on a 3×2 grid, columns 1 to 2, rows 1 to 1");
        QTest::keyClick(&grid, Qt::Key_Right);
        QTest::keyClick(&grid, Qt::Key_Down, Qt::ShiftModifier);
        EXPECT_EQ(grid.grab().toImage(), focused);
        dialog.name().setFocus();
        EXPECT_NE(grid.grab().toImage(), focused) << "the focus can be seen";
    });
}

} // namespace
} // namespace brisk
