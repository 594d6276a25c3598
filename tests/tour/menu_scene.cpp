#include "tour/scenes.h"

namespace brisk::tour {

void playMenu(Stage& stage, Brisk& brisk) {
    const Actor& actor = stage.actors().front();
    stage.activate(actor);
    constexpr int bottomRight = 9;
    brisk.goToMenuItem(bottomRight);
    stage.takePicture("menu");
    stage.user.press(desktop::Key::returnKey);
    stage.expectFrame(actor, "menu-bottom-right", cells(2, 1, 2, 2, 1, 2));
}

} // namespace brisk::tour
