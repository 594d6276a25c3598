#include "ui/windows_pane.h"

#include "ui/settings_action_button.h"
#include "ui/settings_page.h"
#include "ui/text_label.h"

#include <QCheckBox>

namespace brisk {

namespace {

/// Tells the controls of one row from those of the others, for whoever does not see the row.
QString named(const char* control, const SettingsRow& row) {
    return QString::fromUtf8(control) + QStringLiteral(", ") + QString::fromStdString(row.title);
}

/// Found again in a rebuilt pane.
void setIdentity(QWidget& control, const char* kind, const CommandIdentifier& command) {
    control.setObjectName(QString::fromLatin1(kind) + u'.' + QString::fromStdString(command));
}

QWidget* recorderOf(const CommandIdentifier& command, const std::optional<HotKeyBinding>& binding,
                    const WindowsPaneActions& actions) {
    QWidget* const recorder = actions.makeRecorder(command, binding);
    setIdentity(*recorder, "recorder", command);
    return recorder;
}

QWidget* builtInAccessory(const BuiltInLayoutRow& row, const WindowsPaneActions& actions) {
    QWidget* const recorder = recorderOf(row.command, row.binding, actions);
    if (!row.isDragTarget) {
        return accessoryGroup({recorder});
    }
    auto* const drag = new QCheckBox(QStringLiteral("Drag"));
    setIdentity(*drag, "drag", row.command);
    drag->setAccessibleName(named("Drag", row.row));
    drag->setChecked(*row.isDragTarget);
    QObject::connect(drag, &QCheckBox::clicked, drag,
                     [setDragEnabled = actions.setDragEnabled, layout = row.layout](bool isChecked) {
                         setDragEnabled(layout, isChecked);
                     });
    return accessoryGroup({drag, recorder});
}

QWidget* customAccessory(const CustomLayoutRow& row, const WindowsPaneActions& actions) {
    QWidget* const recorder = recorderOf(row.command, row.binding, actions);
    QPushButton* const edit = settingsActionButton(
        QStringLiteral("Edit\u2026"), [edit = actions.editLayout, layout = row.layout] { edit(layout); },
        named("Edit", row.row));
    setIdentity(*edit, "edit", row.command);
    QPushButton* const remove = settingsActionButton(
        QStringLiteral("Remove"), [remove = actions.removeLayout, layout = row.layout] { remove(layout); },
        named("Remove", row.row));
    setIdentity(*remove, "remove", row.command);
    return accessoryGroup({recorder, edit, remove});
}

} // namespace

QWidget* makeWindowsPane(const WindowsPane& pane, WindowGapField& gapField, WindowGapStepper& gapStepper,
                         const WindowsPaneActions& actions) {
    auto* const page = new SettingsPage(pane.heading);

    SettingsSection& layout = page->addSection(QStringLiteral("Layout"));
    auto* const unit =
        new TextLabel(QStringLiteral("px"), {.color = ColorRole::secondaryLabel, .isCompressible = false});
    layout.addRow(pane.windowSpacing, accessoryGroup({&gapField, unit, &gapStepper}));
    layout.addRow(pane.dragZones, accessoryText(pane.dragZonesState));

    SettingsSection& builtIn = page->addSection(QStringLiteral("Built-in Layouts"));
    for (const BuiltInLayoutRow& row : pane.builtInLayouts) {
        builtIn.addRow(row.row, builtInAccessory(row, actions));
    }

    SettingsSection& custom = page->addSection(QStringLiteral("Custom Layouts"));
    QPushButton* const add = settingsActionButton(QStringLiteral("Add Layout\u2026"), actions.addLayout);
    add->setObjectName("addLayout");
    custom.addRow(pane.customLayouts, add);
    for (const CustomLayoutRow& row : pane.customLayoutRows) {
        custom.addRow(row.row, customAccessory(row, actions));
    }
    return page;
}

} // namespace brisk
