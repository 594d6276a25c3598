#include "platform/simulated/desktop.h"

#include <utility>

namespace brisk::simulated {

Desktop::Desktop() {
    accessibility.displays = {{.frame = {{0, 0}, {1440, 900}}, .visibleFrame = {{0, 0}, {1440, 875}}}};
}

ApplicationRef Desktop::launch(std::optional<std::string> name) {
    applications.push_back(std::make_shared<Application>(++lastProcess_, std::move(name)));
    return applications.back();
}

WindowRef Desktop::openWindow(const ApplicationRef& application, const CGRect& frame) {
    auto window = std::make_shared<Window>(Window{.frame = frame});
    application->windows.insert(application->windows.begin(), window);
    return window;
}

ApplicationRef Desktop::launchInFront(std::optional<std::string> name, const CGRect& frame) {
    auto application = launch(std::move(name));
    openWindow(application, frame);
    workspace.frontmost = application;
    return application;
}

} // namespace brisk::simulated
