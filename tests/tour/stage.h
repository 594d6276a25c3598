#pragma once

#include "desktop/controls/controls.h"
#include "desktop/controls/user.h"
#include "desktop/support/input.h"
#include "desktop/support/virtual_server.h"
#include "desktop/support/window_manager.h"
#include "tour/expected_frame.h"

#include <filesystem>
#include <string>
#include <vector>

namespace brisk::tour {

/// A client of the tour, on the screen and decorated.
struct Actor {
    std::string name;
    xcb_window_t window = XCB_WINDOW_NONE;
};

/// The desktop that the tour plays on: a panel with a tray, a compositor, and programs with windows. Whatever does not
/// come up throws `std::runtime_error`.
class Stage {
public:
    explicit Stage(std::filesystem::path folderForPictures);

    const std::vector<Actor>& actors() const { return actors_; }
    void activate(const Actor& actor);

    /// Pictures are numbered in the order in which they are taken.
    void takePicture(const std::string& name);
    void takePictureOf(xcb_window_t window, const std::string& name);

    /// A row of the table: waits for the actor to have that frame, takes a picture and judges what is there then.
    void expectFrame(const Actor& actor, const std::string& command, const desktop::PixelRect& expected);
    int frameCount() const { return frameCount_; }
    int wrongFrameCount() const { return wrongFrameCount_; }

    desktop::VirtualServer server{screenSize};
    desktop::WindowManager windowManager{server, desktop::WindowManager::Kind::openbox};
    desktop::DesktopConnection desktop{server.display()};
    desktop::Keyboard keyboard{desktop};
    desktop::Pointer pointer{desktop};
    desktop::AccessibilityBus controls{server.environment()};
    desktop::User user{desktop, controls};

private:
    void openProgram(const std::string& name, std::vector<std::string> arguments);
    std::string picturePath(const std::string& name);

    std::filesystem::path folder_;
    std::vector<desktop::Process> programs_;
    std::vector<Actor> actors_;
    int pictureCount_ = 0;
    int frameCount_ = 0;
    int wrongFrameCount_ = 0;
};

} // namespace brisk::tour
