#include "ui/custom_layout_editor.h"

#include "settings/layout_editing.h"
#include "ui/text_label.h"
#include "ui/theme.h"
#include "ui/window_grid_selection_view.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLineEdit>
#include <QPointer>
#include <QPushButton>
#include <QSignalBlocker>
#include <QVBoxLayout>

#include <algorithm>
#include <array>
#include <utility>

namespace brisk {

namespace {

constexpr QSize editorSize{520, 430};
constexpr QSize gridViewSize{520, 220};
constexpr int nameFieldWidth = 420;

/// Also tells assistive technology what the field is for: it passes over a pop-up's own name.
TextLabel* makeFieldLabel(const QString& text, QWidget* field) {
    auto* const label = new TextLabel(text, {.pixelSize = 12, .weight = QFont::Medium, .isCompressible = false});
    label->setBuddy(field);
    return label;
}

QComboBox* makeGridSizePopup(std::int64_t size, const QString& name) {
    auto* const popup = new QComboBox;
    for (const std::int64_t choice : gridSizes) {
        popup->addItem(QString::number(choice), QVariant::fromValue<qlonglong>(choice));
    }
    popup->setFont(themeFont(12));
    popup->setAccessibleName(name);
    // A size that is not offered shows as none.
    popup->setCurrentIndex(popup->findText(QString::number(size)));
    return popup;
}

std::optional<std::int64_t> chosenSize(const QComboBox& popup) {
    const QVariant size = popup.currentData();
    return size.isValid() ? std::optional<std::int64_t>(size.toLongLong()) : std::nullopt;
}

} // namespace

CustomWindowLayoutEditorView::CustomWindowLayoutEditorView(
    const CustomWindowLayout& layout, std::optional<HotKeyBinding> binding,
    std::function<std::optional<std::string>(const HotKeyBinding&)> validationMessage,
    const HotKeyRecorderServices& services, QWidget* parent)
    : QWidget(parent),
      nameField_(new QLineEdit(QString::fromStdString(layout.name))),
      columnsPopup_(makeGridSizePopup(normalized(layout.selection).columns, tr("Columns"))),
      rowsPopup_(makeGridSizePopup(normalized(layout.selection).rows, tr("Rows"))),
      selectionLabel_(
          new TextLabel({}, {.pixelSize = 11, .color = ColorRole::secondaryLabel, .alignment = Qt::AlignHCenter})),
      dragCheckbox_(new QCheckBox(tr("Available as a drag target"))),
      gridView_(new WindowGridSelectionView(layout.selection)),
      shortcutRecorder_(new HotKeyRecorderView(std::move(binding), services)) {
    resize(editorSize);

    nameField_->setPlaceholderText(tr("Layout name"));
    nameField_->setAccessibleName(tr("Name"));
    nameField_->setFont(themeFont(13));
    nameField_->setFixedWidth(nameFieldWidth);
    // To be typed over; from its end, so that the beginning of a long one shows.
    const auto length = static_cast<int>(nameField_->text().size());
    nameField_->setSelection(length, -length);
    // A line edit keeps the line breaks of a pasted text and shows them as spaces; then they had better be spaces.
    connect(nameField_, &QLineEdit::textEdited, this, [this](QString text) {
        constexpr std::array lineBreaks{u'\n', u'\r', u'\u2028', u'\u2029'};
        const bool hasBreaks = std::ranges::any_of(lineBreaks, [&](char16_t c) { return text.contains(QChar(c)); });
        if (hasBreaks) {
            const int position = nameField_->cursorPosition();
            for (const char16_t lineBreak : lineBreaks) {
                text.replace(QChar(lineBreak), QLatin1Char(' '));
            }
            nameField_->setText(text);
            nameField_->setCursorPosition(position);
        }
    });

    for (QComboBox* const popup : {columnsPopup_, rowsPopup_}) {
        connect(popup, &QComboBox::currentIndexChanged, this, &CustomWindowLayoutEditorView::gridSizeChanged);
    }
    shortcutRecorder_->validationMessage = std::move(validationMessage);
    dragCheckbox_->setChecked(layout.isAvailableForDragging);
    dragCheckbox_->setFont(themeFont(12));
    gridView_->onSelectionChanged = [this](const WindowGridSelection& selected) {
        selectionLabel_->setText(QString::fromStdString(areaDescription(selected)));
    };
    buildLayout();
    selectionLabel_->setText(QString::fromStdString(areaDescription(layout.selection)));
}

void CustomWindowLayoutEditorView::buildLayout() {
    const auto row = [](int spacing, std::initializer_list<QWidget*> widgets) {
        auto* const layout = new QHBoxLayout;
        layout->setSpacing(spacing);
        for (QWidget* const widget : widgets) {
            layout->addWidget(widget, 0, Qt::AlignVCenter);
        }
        layout->addStretch();
        return layout;
    };
    gridView_->setFixedSize(gridViewSize);
    selectionLabel_->setFixedWidth(gridViewSize.width());
    auto* const helpText =
        new TextLabel(tr("Drag across the grid to select a rectangular target. The saved area is relative to whichever "
                         "display contains the window. Hold Shift while moving a window to use enabled drag targets."),
                      {.pixelSize = 11, .color = ColorRole::secondaryLabel, .maximumLines = 0});
    helpText->setFixedSize(gridViewSize.width(), helpText->heightForWidth(gridViewSize.width()));

    auto* const main = new QVBoxLayout(this);
    main->setContentsMargins(0, 0, 0, 0);
    main->setSpacing(10);
    main->addLayout(row(12, {makeFieldLabel(tr("Name"), nameField_), nameField_}));
    main->addLayout(row(8, {makeFieldLabel(tr("Columns"), columnsPopup_), columnsPopup_,
                            makeFieldLabel(tr("Rows"), rowsPopup_), rowsPopup_}));
    main->addWidget(gridView_);
    main->addWidget(selectionLabel_);
    main->addLayout(row(12, {makeFieldLabel(tr("Shortcut"), shortcutRecorder_), shortcutRecorder_}));
    main->addWidget(dragCheckbox_);
    main->addWidget(helpText);
    main->addStretch();
}

void CustomWindowLayoutEditorView::gridSizeChanged() {
    const WindowGridSelection grid = wholeGrid(chosenSize(*columnsPopup_), chosenSize(*rowsPopup_));
    gridView_->select(grid);
    // Where none was chosen, the one that counts instead.
    for (const auto& [popup, size] : {std::pair(columnsPopup_, grid.columns), std::pair(rowsPopup_, grid.rows)}) {
        const QSignalBlocker unheard(popup);
        popup->setCurrentIndex(popup->findText(QString::number(size)));
    }
}

std::string CustomWindowLayoutEditorView::name() const {
    return nameField_->text().toStdString();
}

const WindowGridSelection& CustomWindowLayoutEditorView::selection() const {
    return gridView_->selection();
}

bool CustomWindowLayoutEditorView::isAvailableForDragging() const {
    return dragCheckbox_->isChecked();
}

const std::optional<HotKeyBinding>& CustomWindowLayoutEditorView::binding() const {
    return shortcutRecorder_->binding();
}

bool editCustomLayout(SettingsStore& store, const HotKeyRecorderServices& services,
                      const std::optional<CustomWindowLayout>& existing, QWidget* parent) {
    const std::string defaultName = defaultLayoutName(store.settings);
    const CustomWindowLayout layout = existing ? *existing : defaultNewLayout(store.settings);
    const CommandIdentifier command = commandIdentifier(layout);

    // On the heap and watched: whoever ends the program meanwhile may take the parent and its dialogs with it.
    const QPointer<QDialog> dialog = new QDialog(parent);
    auto* const editor = new CustomWindowLayoutEditorView(
        layout, hotKeyBinding(store.settings, command),
        [&store, command](const HotKeyBinding& candidate) { return store.conflictMessage(candidate, command); },
        services);

    auto* const message =
        new TextLabel(existing ? QObject::tr("Edit Custom Window Layout") : QObject::tr("Add Custom Window Layout"),
                      {.weight = QFont::Bold});
    auto* const informative =
        new TextLabel(QObject::tr("Choose the target area relative to the active display."), {.pixelSize = 11});
    auto* const buttons = new QDialogButtonBox(QDialogButtonBox::Save | QDialogButtonBox::Cancel);
    buttons->button(QDialogButtonBox::Save)->setText(QObject::tr("Save"));
    buttons->button(QDialogButtonBox::Save)->setDefault(true);
    buttons->button(QDialogButtonBox::Cancel)->setText(QObject::tr("Cancel"));
    QObject::connect(buttons, &QDialogButtonBox::accepted, dialog, &QDialog::accept);
    QObject::connect(buttons, &QDialogButtonBox::rejected, dialog, &QDialog::reject);

    auto* const content = new QVBoxLayout(dialog);
    content->setContentsMargins(20, 20, 20, 20);
    content->setSpacing(8);
    content->setSizeConstraint(QLayout::SetFixedSize);
    content->addWidget(message);
    content->addWidget(informative);
    content->addSpacing(8);
    content->addWidget(editor);
    content->addSpacing(8);
    content->addWidget(buttons);
    dialog->setWindowTitle(message->text());

    const bool isSaved = dialog->exec() == QDialog::Accepted && dialog;
    if (isSaved) {
        store.saveCustomLayout({.id = layout.id,
                                .name = layoutName(editor->name(), defaultName),
                                .selection = editor->selection(),
                                .isAvailableForDragging = editor->isAvailableForDragging()},
                               editor->binding());
    }
    delete dialog;
    return isSaved;
}

} // namespace brisk
