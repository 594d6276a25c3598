#pragma once

#include "app/alert_presenter.h"

#include <QMessageBox>

namespace brisk {

/// An alert as Qt shows it, not shown yet.
class MessageBox final : public QMessageBox {
public:
    explicit MessageBox(const Alert& alert);

    /// Shows it above all windows and asks for the focus, whatever program is in front.
    void showInFront();
};

} // namespace brisk
