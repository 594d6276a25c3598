#include "ui/general_pane.h"

#include "ui/settings_action_button.h"
#include "ui/settings_page.h"
#include "ui/text_label.h"

#include <QCheckBox>

namespace brisk {

QWidget* makeGeneralPane(const GeneralPane& pane, const GeneralPaneActions& actions) {
    auto* const page = new SettingsPage(pane.heading);

    auto* const state = new TextLabel(QString::fromStdString(pane.accessibilityState),
                                      {.pixelSize = 12,
                                       .weight = QFont::Medium,
                                       .color = pane.isAccessibilityAllowed ? ColorRole::green : ColorRole::orange,
                                       .isCompressible = false});
    auto* const openSettings =
        settingsActionButton(QStringLiteral("Open System Settings\u2026"), actions.openAccessibilitySettings);
    openSettings->setObjectName("openAccessibilitySettings");
    page->addSection(QStringLiteral("Permissions")).addRow(pane.accessibility, accessoryGroup({state, openSettings}));

    SettingsSection& application = page->addSection(QStringLiteral("Application"));
    application.addRow(pane.menuBar, accessoryText(pane.menuBarState));

    auto* const opensAtLogin = new QCheckBox;
    opensAtLogin->setObjectName("opensAtLogin");
    opensAtLogin->setAccessibleName(QStringLiteral("Open Brisk at login"));
    opensAtLogin->setChecked(pane.opensAtLogin);
    QObject::connect(opensAtLogin, &QCheckBox::clicked, opensAtLogin, actions.setOpensAtLogin);
    if (pane.needsLoginItemApproval) {
        auto* const openLoginItems =
            settingsActionButton(QStringLiteral("Open Login Items\u2026"), actions.openLoginItems);
        openLoginItems->setObjectName("openLoginItems");
        application.addRow(pane.openAtLogin, accessoryGroup({openLoginItems, opensAtLogin}));
    } else {
        application.addRow(pane.openAtLogin, accessoryGroup({opensAtLogin}));
    }
    return page;
}

} // namespace brisk
