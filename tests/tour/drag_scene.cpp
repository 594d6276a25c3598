#include "tour/scenes.h"

#include <stdexcept>

namespace brisk::tour {

using desktop::Key;

void playDrag(Stage& stage, Brisk& brisk) {
    const Actor& actor = stage.actors().at(1);
    stage.activate(actor);
    if (!stage.pointer.takeByTitle(actor.window)) {
        throw std::runtime_error(actor.name + " does not follow the pointer");
    }
    // Only now: with Shift from the start, openbox moves nothing.
    stage.keyboard.down(Key::leftShift);
    // Between the zones first, where none is under the pointer.
    stage.pointer.moveTo(screenSize.width / 2 + 1, 150);
    stage.user.await(
        [&] {
            stage.pointer.moveBy(0, 1);
            return brisk.isOverlayShown();
        },
        "the zones");
    stage.takePicture("zones");
    stage.pointer.moveTo(1400, 350);
    stage.takePicture("zone-highlighted");
    stage.pointer.up();
    stage.keyboard.up(Key::leftShift);
    stage.expectFrame(actor, "dropped-top-right", allowedByHints(stage.desktop, actor.window, cells(2, 1, 2, 2, 0, 1)));
}

} // namespace brisk::tour
