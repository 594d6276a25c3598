#include "tour/scenes.h"

namespace brisk::tour {

void playGuide(Stage& stage, Brisk& brisk) {
    brisk.takePictureOf(stage.user.window("Welcome to Brisk"), "guide-welcome");
    const xcb_window_t guide = stage.desktop.activeWindow();
    // What the guide asks for is a window manager: without one it waits, and goes on by itself once there is one.
    stage.windowManager.kill();
    stage.user.click("push button", "Continue");
    stage.user.control("label", "Waiting for permission…");
    brisk.takePictureOf(guide, "guide-permission");
    stage.windowManager.start();
    brisk.takePictureOf(stage.user.window("You're Set"), "guide-ready");
    stage.user.click("push button", "Done");
    stage.user.await([&] { return !stage.desktop.isViewable(guide); }, "the end of the guide");
}

} // namespace brisk::tour
