#pragma once

#include "tour/stage.h"

#include <string>

namespace brisk::tour {

/// The program on the stage. Ends with this object.
class Brisk {
public:
    /// What the desktop looks like that it starts on.
    enum class Look { light, dark };

    /// Starts it and waits until it has its shortcuts. Without `settings` it is its first start.
    Brisk(Stage& stage, const std::string& program, const std::string& settings, Look look);

    Look look() const { return look_; }
    bool isRunning() { return process_.isRunning(); }
    std::string errors() const { return process_.errors(); }

    /// With the look in the picture's name.
    void takePictureOf(xcb_window_t window, const std::string& name);

    /// Clicks its icon in the tray and goes to an item of the menu that can be chosen, counted from the first, or with
    /// a negative number from the last. By the keys: toolkits show assistive technology no menu that belongs to no
    /// window.
    void goToMenuItem(int index);
    bool isOverlayShown();

private:
    Stage& stage_;
    Look look_;
    desktop::Process process_;
};

} // namespace brisk::tour
