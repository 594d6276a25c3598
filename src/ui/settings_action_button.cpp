#include "ui/settings_action_button.h"

#include "ui/theme.h"

#include <algorithm>
#include <utility>

namespace brisk {

QPushButton* settingsActionButton(const QString& title, std::function<void()> handler, const QString& accessibleName) {
    auto* const button = new QPushButton(title);
    button->setAccessibleName(accessibleName.isEmpty() ? title : accessibleName);
    // Return is no dialog's here.
    button->setAutoDefault(false);
    const int titleWidth = button->fontMetrics().horizontalAdvance(title);
    button->setMinimumWidth(std::max(button->sizeHint().width(), titleWidth + 2 * buttonTitleMargin));
    button->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    QObject::connect(button, &QPushButton::clicked, button, std::move(handler));
    return button;
}

} // namespace brisk
