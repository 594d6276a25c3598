#include "platform/x11/accessibility.h"

#include <algorithm>
#include <cmath>
#include <memory>

namespace brisk::x11 {

namespace {

/// At login the window manager may come up later than this program.
constexpr std::chrono::milliseconds windowManagerStartTime{3000};

/// The server's coordinates are 16 bits wide; so is every size that fits between them.
constexpr double maximumCoordinate = 32767;

class ApplicationElement final : public AXUIElement {
public:
    explicit ApplicationElement(const ProcessIdentity& identity) : process(identity) {}
    bool isEqual(const AXUIElement& other) const override {
        const auto* application = dynamic_cast<const ApplicationElement*>(&other);
        return application != nullptr && application->process == process;
    }
    std::size_t hash() const override { return std::hash<ProcessIdentifier>{}(process.id); }

    const ProcessIdentity process;
};

} // namespace

Accessibility::Accessibility(MainQueue& mainQueue, WindowManagerPeer& windowManager, WindowTracker& tracker,
                             Displays& displays, WindowMover& mover, std::function<void()> explainTrust)
    : mainQueue_(mainQueue),
      windowManager_(windowManager),
      tracker_(tracker),
      displays_(displays),
      mover_(mover),
      explainTrust_(std::move(explainTrust)) {}

Accessibility::~Accessibility() {
    if (pendingPrompt_) {
        pendingPrompt_->cancel();
    }
}

AXUIElementRef Accessibility::AXUIElementCreateApplication(ProcessIdentifier processIdentifier) {
    auto process = tracker_.ownerWithID(processIdentifier);
    if (!process) {
        process = runningProcess(processIdentifier);
    }
    return std::make_shared<ApplicationElement>(process.value_or(ProcessIdentity{.id = processIdentifier}));
}

AXAttributeValue Accessibility::AXUIElementCopyAttributeValue(const AXUIElementRef& element,
                                                              std::string_view attribute) {
    if (const auto window = std::dynamic_pointer_cast<const Window>(element)) {
        return copyWindowAttribute(window, attribute);
    }
    if (const auto* application = dynamic_cast<const ApplicationElement*>(element.get())) {
        return copyApplicationAttribute(application->process, attribute);
    }
    return {.error = kAXErrorIllegalArgument, .value = {}};
}

AXAttributeValue Accessibility::copyApplicationAttribute(const ProcessIdentity& process, std::string_view attribute) {
    tracker_.synchronize();
    // Reading process tables is for applications without windows.
    if (process.id > 0 && tracker_.ownerWithID(process.id) != process && runningProcess(process.id) != process) {
        return {.error = kAXErrorInvalidUIElement, .value = {}};
    }
    if (attribute == AXFocusedWindow) {
        const auto window = tracker_.focusedWindowOf(process);
        return window ? AXAttributeValue{.value = AXUIElementRef{window}}
                      : AXAttributeValue{.error = kAXErrorNoValue, .value = {}};
    }
    if (attribute == AXWindows) {
        const auto windows = tracker_.windowsOf(process);
        return {.value = std::vector<AXUIElementRef>{windows.begin(), windows.end()}};
    }
    return {.error = kAXErrorAttributeUnsupported, .value = {}};
}

AXAttributeValue Accessibility::copyWindowAttribute(const WindowRef& window, std::string_view attribute) {
    if (!window->exists) {
        return {.error = kAXErrorInvalidUIElement, .value = {}};
    }
    if (attribute == AXRole) {
        return {.value = std::string{"AXWindow"}};
    }
    if (attribute == AXPosition || attribute == AXSize) {
        return copyFrameAttribute(window, attribute);
    }
    return {.error = kAXErrorAttributeUnsupported, .value = {}};
}

AXAttributeValue Accessibility::copyFrameAttribute(const WindowRef& window, std::string_view attribute) {
    const auto readAlong = std::exchange(sizeReadAlong_, std::nullopt);
    if (attribute == AXSize && readAlong && readAlong->first == window) {
        return {.value = AXValue{readAlong->second}};
    }
    const auto frame = mover_.read(window);
    if (!frame) {
        return {.error = kAXErrorInvalidUIElement, .value = {}};
    }
    const CGSize size{static_cast<double>(frame->width), static_cast<double>(frame->height)};
    if (attribute == AXSize) {
        return {.value = AXValue{size}};
    }
    sizeReadAlong_.emplace(window, size);
    const CGPoint origin = displays_.accessibilityOrigin();
    return {.value = AXValue{CGPoint{frame->x - origin.x, frame->y - origin.y}}};
}

AXError Accessibility::AXUIElementSetAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                                    const AXValue& value) {
    sizeReadAlong_.reset();
    const auto window = std::dynamic_pointer_cast<const Window>(element);
    if (!window) {
        return kAXErrorAttributeUnsupported;
    }
    if (const auto* point = std::get_if<CGPoint>(&value); point != nullptr && attribute == AXPosition) {
        const CGPoint origin = displays_.accessibilityOrigin();
        return mover_.setPosition(window, {point->x + origin.x, point->y + origin.y});
    }
    if (const auto* size = std::get_if<CGSize>(&value); size != nullptr && attribute == AXSize) {
        return mover_.setSize(window, *size);
    }
    const bool isWritable = attribute == AXPosition || attribute == AXSize;
    return isWritable ? kAXErrorIllegalArgument : kAXErrorAttributeUnsupported;
}

std::optional<AXValue> Accessibility::AXValueCreate(CGPoint point) {
    // Comparisons with a value that is not a number are false, so that it is refused, too.
    if (std::abs(point.x) <= maximumCoordinate && std::abs(point.y) <= maximumCoordinate) {
        return point;
    }
    return std::nullopt;
}

std::optional<AXValue> Accessibility::AXValueCreate(CGSize size) {
    if (size.width >= 0 && size.width <= maximumCoordinate && size.height >= 0 && size.height <= maximumCoordinate) {
        return size;
    }
    return std::nullopt;
}

bool Accessibility::AXIsProcessTrusted() {
    return windowManager_.isPresent();
}

bool Accessibility::AXIsProcessTrustedWithOptions(AXTrustedCheckOptionPrompt prompt) {
    const bool isTrusted = AXIsProcessTrusted();
    if (!isTrusted && prompt == AXTrustedCheckOptionPrompt::yes) {
        this->prompt();
    }
    return isTrusted;
}

std::vector<ScreenInfo> Accessibility::screens() {
    return displays_.screens();
}

void Accessibility::prompt() {
    if (pendingPrompt_) {
        return;
    }
    using std::chrono::milliseconds;
    const auto sinceStart = std::chrono::duration_cast<milliseconds>(std::chrono::steady_clock::now() - start_);
    const auto delay = std::max(windowManagerStartTime - sinceStart, milliseconds::zero());
    // Called off in the destructor.
    pendingPrompt_ = mainQueue_.asyncAfter(delay, [this] {
        pendingPrompt_.reset();
        if (!AXIsProcessTrusted()) {
            explainTrust_();
        }
    });
}

} // namespace brisk::x11
