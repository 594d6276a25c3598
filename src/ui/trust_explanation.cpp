#include "ui/trust_explanation.h"

namespace brisk {

void TrustExplanation::show() {
    if (!box_) {
        box_ = std::make_unique<MessageBox>(Alert{
            .messageText = "Brisk cannot manage windows yet",
            .informativeText =
                "Brisk moves and resizes windows through the window manager, and none that follows the Extended "
                "Window Manager Hints (EWMH) is running.\n\nStart one, such as Openbox, Xfwm or KWin. Brisk works "
                "as soon as it runs; there is no need to start Brisk again."});
        // A box with a default button is modal unless told otherwise, and while one is open no shortcut works.
        box_->setModal(false);
    }
    box_->showInFront();
}

} // namespace brisk
