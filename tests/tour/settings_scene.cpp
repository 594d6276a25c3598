#include "tour/scenes.h"

namespace brisk::tour {

using desktop::Key;

void playSettings(Stage& stage, Brisk& brisk) {
    constexpr int settingsItem = -4;
    brisk.goToMenuItem(settingsItem);
    stage.user.press(Key::returnKey);
    for (const char* pane : {"General", "Sync", "About", "Windows"}) {
        stage.user.click("page tab", pane);
        const xcb_window_t window = stage.user.window(std::string(pane) + " — Brisk Settings");
        brisk.takePictureOf(window, std::string("settings-") + pane);
    }

    stage.user.click("push button", "Window shortcut", "Right Half");
    stage.user.await(
        [&] {
            return stage.user.control("push button", "Window shortcut", "Right Half")
                .description.starts_with("Recording");
        },
        "the recording of a shortcut");
    stage.user.press(Key::left, {Key::leftControl, Key::leftAlt});
    brisk.takePictureOf(stage.user.window("Windows — Brisk Settings"), "recorder-refuses");
}

} // namespace brisk::tour
