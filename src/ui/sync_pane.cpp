#include "ui/sync_pane.h"

#include "ui/settings_action_button.h"
#include "ui/settings_page.h"
#include "ui/text_label.h"

namespace brisk {

QWidget* makeSyncPane(const SyncPane& pane, const SyncPaneActions& actions) {
    auto* const page = new SettingsPage(pane.heading);
    auto* const storage = new TextLabel(QString::fromStdString(pane.storage),
                                        {.pixelSize = 12, .weight = QFont::Medium, .isCompressible = false});
    auto* const reveal = settingsActionButton(QStringLiteral("Reveal in Finder"), actions.revealSettingsFile);
    reveal->setObjectName("revealSettingsFile");
    auto* const copyPath = settingsActionButton(QStringLiteral("Copy Path"), actions.copySettingsPath);
    copyPath->setObjectName("copySettingsPath");
    page->addSection(QStringLiteral("Storage"))
        .addRow(pane.settingsLocation, accessoryGroup({storage, reveal, copyPath}));
    return page;
}

} // namespace brisk
