#include "platform/accessibility_contract.h"

#include "platform/simulated/desktop.h"

#include <algorithm>

namespace brisk::simulated {
namespace {

class SimulatedDesktopUnderTest final : public DesktopUnderTest {
public:
    AccessibilityPlatform& accessibility() override { return desktop_.accessibility; }
    brisk::Workspace& workspace() override { return desktop_.workspace; }

    LaunchedApplication launchInFront(const std::vector<WindowRequest>& windows) override {
        const ApplicationRef application = desktop_.launchInFront("Application", windows.front().frame);
        LaunchedApplication launched{.processIdentifier = application->processIdentifier(), .windows = {}};
        for (const WindowRequest& request : windows) {
            const bool isFirst = launched.windows.empty();
            const WindowRef window =
                isFirst ? application->windows.front() : Desktop::openWindow(application, request.frame);
            window->minimumSize = request.minimumSize;
            window->sizeWriteError = request.isResizable ? kAXErrorSuccess : kAXErrorCannotComplete;
            launched.windows.push_back(windows_.size());
            windows_.push_back(window);
        }
        return launched;
    }

    void closeWindow(const LaunchedApplication&, WindowToken window) override { windows_[window]->exists = false; }

    void quit(const LaunchedApplication& application) override {
        for (const ApplicationRef& running : desktop_.applications) {
            if (running->processIdentifier() == application.processIdentifier) {
                running->terminated = true;
            }
        }
    }

    void setDisplays(const std::vector<CGRect>& frames) override {
        desktop_.accessibility.displays.clear();
        for (const CGRect& frame : frames) {
            desktop_.accessibility.displays.push_back({.frame = frame, .visibleFrame = frame});
        }
    }

private:
    Desktop desktop_;
    std::vector<WindowRef> windows_;
};

} // namespace
} // namespace brisk::simulated

namespace brisk {
INSTANTIATE_TEST_SUITE_P(Simulated, AccessibilityContract,
                         ::testing::Values([] { return std::make_unique<simulated::SimulatedDesktopUnderTest>(); }));
} // namespace brisk
