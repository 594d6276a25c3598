#pragma once

#include "app/application.h"

#include <functional>

class QMenuBar;
class QWidget;

namespace brisk {

/// The running program on Qt.
class QtApplication final : public Application {
public:
    /// `onChosen` carries out the items of the main menu.
    explicit QtApplication(std::function<void(const MenuItem&)> onChosen);

    /// Nothing to do: the desktops that Qt serves list a program for as long as it has a window.
    void setActivationPolicy(ActivationPolicy) override {}
    void setMainMenu(const Menu& menu) override { mainMenu_ = menu; }
    void terminate() override;

    /// The main menu as the menu bar of one of the program's windows, which owns it.
    QMenuBar* makeMenuBar(QWidget* window) const;

private:
    std::function<void(const MenuItem&)> onChosen_;
    Menu mainMenu_;
};

} // namespace brisk
