#pragma once

#include <string>

namespace brisk {

/// A message with one "OK" button, in the informational style.
struct Alert {
    std::string messageText;
    std::string informativeText;
    friend bool operator==(const Alert&, const Alert&) = default;
};

/// Shows modal dialogs. Main thread only.
class AlertPresenter {
public:
    virtual ~AlertPresenter() = default;
    /// Brings the program to the front and shows the alert; returns once it is closed. Other work of the main queue
    /// goes on meanwhile.
    virtual void runModal(const Alert& alert) = 0;
    /// Whether a modal dialog of this program is open, an alert or another.
    virtual bool isRunningModal() const = 0;
};

} // namespace brisk
