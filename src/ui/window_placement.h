#pragma once

class QScreen;
class QWidget;

namespace brisk {

/// The primary one where the pointer is on none.
QScreen& screenUnderPointer();

/// Moves a window to the middle of the screen that the pointer is on, with its top left corner on the screen in any
/// case. The window has its size by then.
void centreOnScreen(QWidget& window);

/// Shows the window above the others and asks for the focus.
void bringToFront(QWidget& window);

} // namespace brisk
