#include "tour/scenes.h"

namespace brisk::tour {

void playEditor(Stage& stage, Brisk& brisk) {
    stage.user.scrollTo("push button", "Remove, Reading");
    brisk.takePictureOf(stage.user.window("Windows — Brisk Settings"), "settings-Windows-end");
    stage.user.click("push button", "Add Layout…");
    const xcb_window_t editor = stage.user.window("Add Custom Window Layout");
    // Two of the middle columns, the upper three rows.
    const auto grid = stage.user.control("graphic", "Target area").place;
    stage.pointer.moveTo(grid.x + grid.width * 3 / 8, grid.y + grid.height / 8);
    stage.pointer.down();
    stage.pointer.moveTo(grid.x + grid.width * 5 / 8, grid.y + grid.height * 5 / 8);
    stage.pointer.up();
    stage.user.control("label", "2×3 area on a 4×4 grid");
    brisk.takePictureOf(editor, "editor");
    stage.user.click("push button", "Cancel");
}

} // namespace brisk::tour
