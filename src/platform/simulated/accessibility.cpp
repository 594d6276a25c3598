#include "platform/simulated/accessibility.h"

#include <algorithm>
#include <cmath>
#include <functional>

namespace brisk::simulated {

namespace {

struct ApplicationElement final : AXUIElement {
    explicit ApplicationElement(ProcessIdentifier id) : processIdentifier(id) {}
    bool isEqual(const AXUIElement& other) const override {
        const auto* application = dynamic_cast<const ApplicationElement*>(&other);
        return application != nullptr && application->processIdentifier == processIdentifier;
    }
    std::size_t hash() const override { return std::hash<ProcessIdentifier>{}(processIdentifier); }
    ProcessIdentifier processIdentifier;
};

struct WindowElement final : AXUIElement {
    explicit WindowElement(WindowRef w) : window(std::move(w)) {}
    bool isEqual(const AXUIElement& other) const override {
        const auto* element = dynamic_cast<const WindowElement*>(&other);
        return element != nullptr && element->window == window;
    }
    std::size_t hash() const override { return std::hash<WindowRef>{}(window); }
    WindowRef window;
};

double constrained(double wanted, double minimum, double increment) {
    const double stepped = increment > 0 ? std::floor(wanted / increment) * increment : wanted;
    return std::max(stepped, minimum);
}

CGSize constrained(CGSize wanted, const Window& window) {
    return {.width = constrained(wanted.width, window.minimumSize.width, window.increment.width),
            .height = constrained(wanted.height, window.minimumSize.height, window.increment.height)};
}

AXAttributeValue answer(AXError error, const AXValue& value) {
    return error == kAXErrorSuccess ? AXAttributeValue{.value = value} : AXAttributeValue{.error = error};
}

AXAttributeValue windowAttribute(const Window& window, std::string_view attribute) {
    if (!window.exists) {
        return {.error = kAXErrorInvalidUIElement};
    }
    if (attribute == AXRole) {
        return {.value = std::string("AXWindow")};
    }
    if (attribute == AXPosition) {
        return answer(window.positionReadError, window.frame.origin);
    }
    if (attribute == AXSize) {
        return answer(window.sizeReadError, window.frame.size);
    }
    return {.error = kAXErrorAttributeUnsupported};
}

AXError setWindowAttribute(Window& window, std::string_view attribute, const AXValue& value) {
    if (!window.exists) {
        return kAXErrorInvalidUIElement;
    }
    if (const auto* origin = std::get_if<CGPoint>(&value); origin != nullptr && attribute == AXPosition) {
        if (window.positionWriteError == kAXErrorSuccess) {
            window.frame.origin = *origin;
        }
        return window.positionWriteError;
    }
    if (const auto* size = std::get_if<CGSize>(&value); size != nullptr && attribute == AXSize) {
        if (window.sizeWriteError == kAXErrorSuccess) {
            window.frame.size = constrained(*size, window);
        }
        return window.sizeWriteError;
    }
    return kAXErrorIllegalArgument;
}

bool isFinite(double a, double b) {
    return std::isfinite(a) && std::isfinite(b);
}

} // namespace

AXUIElementRef Accessibility::elementOf(const WindowRef& window) {
    return std::make_shared<WindowElement>(window);
}

AXUIElementRef Accessibility::AXUIElementCreateApplication(ProcessIdentifier processIdentifier) {
    log_.record("AXUIElementCreateApplication " + std::to_string(processIdentifier));
    return std::make_shared<ApplicationElement>(processIdentifier);
}

AXAttributeValue Accessibility::AXUIElementCopyAttributeValue(const AXUIElementRef& element,
                                                              std::string_view attribute) {
    log_.record("AXUIElementCopyAttributeValue " + std::string(attribute));
    if (const auto* window = dynamic_cast<const WindowElement*>(element.get())) {
        return windowAttribute(*window->window, attribute);
    }
    if (const auto* application = dynamic_cast<const ApplicationElement*>(element.get())) {
        return applicationAttribute(application->processIdentifier, attribute);
    }
    return {.error = kAXErrorIllegalArgument};
}

AXAttributeValue Accessibility::applicationAttribute(ProcessIdentifier processIdentifier,
                                                     std::string_view attribute) const {
    const auto found = std::ranges::find_if(applications_, [&](const ApplicationRef& application) {
        return application->processIdentifier() == processIdentifier && !application->terminated;
    });
    if (found == applications_.end()) {
        return {.error = kAXErrorInvalidUIElement};
    }
    const Application& application = **found;
    std::vector<AXUIElementRef> elements;
    for (const WindowRef& window : application.windows) {
        if (window->exists) {
            elements.push_back(elementOf(window));
        }
    }
    if (attribute == AXFocusedWindow) {
        if (application.focusedWindowAnswer) {
            return *application.focusedWindowAnswer;
        }
        return elements.empty() ? AXAttributeValue{.error = kAXErrorNoValue}
                                : AXAttributeValue{.value = elements.front()};
    }
    if (attribute == AXWindows) {
        return application.windowsAnswer.value_or(AXAttributeValue{.value = std::move(elements)});
    }
    return {.error = kAXErrorAttributeUnsupported};
}

AXError Accessibility::AXUIElementSetAttributeValue(const AXUIElementRef& element, std::string_view attribute,
                                                    const AXValue& value) {
    log_.record("AXUIElementSetAttributeValue " + std::string(attribute));
    const auto* window = dynamic_cast<const WindowElement*>(element.get());
    return window == nullptr ? kAXErrorAttributeUnsupported : setWindowAttribute(*window->window, attribute, value);
}

std::optional<AXValue> Accessibility::AXValueCreate(CGPoint point) {
    return isFinite(point.x, point.y) ? std::optional<AXValue>(point) : std::nullopt;
}

std::optional<AXValue> Accessibility::AXValueCreate(CGSize size) {
    return isFinite(size.width, size.height) ? std::optional<AXValue>(size) : std::nullopt;
}

bool Accessibility::AXIsProcessTrusted() {
    log_.record("AXIsProcessTrusted");
    return isTrusted;
}

bool Accessibility::AXIsProcessTrustedWithOptions(AXTrustedCheckOptionPrompt prompt) {
    log_.record(prompt == AXTrustedCheckOptionPrompt::yes ? "AXIsProcessTrustedWithOptions prompt"
                                                          : "AXIsProcessTrustedWithOptions");
    return isTrusted;
}

std::vector<ScreenInfo> Accessibility::screens() {
    log_.record("screens");
    return displays;
}

} // namespace brisk::simulated
