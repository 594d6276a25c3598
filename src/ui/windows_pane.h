#pragma once

#include "app/windows_pane.h"
#include "ui/window_gap_controls.h"

#include <QWidget>

#include <functional>

namespace brisk {

/// What the Windows pane's controls do. A layout is given as it was when the pane was built.
struct WindowsPaneActions {
    std::function<void(WindowLayout, bool)> setDragEnabled;
    std::function<void()> addLayout;
    std::function<void(const CustomWindowLayout&)> editLayout;
    std::function<void(const CustomWindowLayout&)> removeLayout;
    /// The recorder for a command's shortcut.
    std::function<QWidget*(const CommandIdentifier&, const std::optional<HotKeyBinding>&)> makeRecorder;
};

/// Takes the two gap controls over; whoever wants them to outlive the pane takes them out again.
QWidget* makeWindowsPane(const WindowsPane& pane, WindowGapField& gapField, WindowGapStepper& gapStepper,
                         const WindowsPaneActions& actions);

} // namespace brisk
