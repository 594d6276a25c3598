#pragma once

#include <QPushButton>

#include <functional>

namespace brisk {

/// A push button that carries out what it was given. The accessible name says more than the title where several buttons
/// of a pane share that.
QPushButton* settingsActionButton(const QString& title, std::function<void()> handler,
                                  const QString& accessibleName = {});

} // namespace brisk
