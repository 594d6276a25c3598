#pragma once

#include "platform/modifier_flags.h"

#include <QApplication>
#include <QKeyEvent>
#include <QWidget>

namespace brisk {

/// What the default shortcuts are pressed with.
inline constexpr NSEventModifierFlags controlOption = NSEventModifierFlagControl | NSEventModifierFlagOption;

/// Shows a window and makes it the active one, so that its widgets can have the focus.
inline void showActive(QWidget& window) {
    window.show();
    window.activateWindow();
    QApplication::setActiveWindow(&window);
    QApplication::processEvents();
}

/// Presses and releases a key of the simulated keyboard, whose native codes are virtual key codes and modifier flags.
/// It goes where the toolkit sends keys: to the widget that grabbed the keyboard, else to the one with the focus, else
/// to the window. `repeats` is how often holding it repeats the press.
inline void pressKey(QWidget& window, std::uint32_t virtualKeyCode, NSEventModifierFlags flags,
                     Qt::Key key = Qt::Key_unknown, int repeats = 0) {
    const auto receiver = [&]() -> QWidget* {
        if (QWidget* const grabber = QWidget::keyboardGrabber()) {
            return grabber;
        }
        return window.focusWidget() != nullptr ? window.focusWidget() : &window;
    };
    Qt::KeyboardModifiers modifiers;
    modifiers.setFlag(Qt::ShiftModifier, (flags & NSEventModifierFlagShift) != 0);
    modifiers.setFlag(Qt::ControlModifier, (flags & NSEventModifierFlagControl) != 0);
    modifiers.setFlag(Qt::AltModifier, (flags & NSEventModifierFlagOption) != 0);
    modifiers.setFlag(Qt::MetaModifier, (flags & NSEventModifierFlagCommand) != 0);
    for (int press = 0; press <= repeats; ++press) {
        QKeyEvent down(QEvent::KeyPress, key, modifiers, virtualKeyCode, 0, flags, {}, press > 0);
        QApplication::sendEvent(receiver(), &down);
    }
    QKeyEvent up(QEvent::KeyRelease, key, modifiers, virtualKeyCode, 0, flags);
    QApplication::sendEvent(receiver(), &up);
    QApplication::processEvents();
}

} // namespace brisk
