#pragma once

#include <QWidget>

namespace brisk {

/// A window of the program's own. Of a plain widget the toolkit tells assistive technology that it is some part of a
/// window, even where it is the window itself, and screen readers then miss that one was opened.
///
/// Closed, it gives the native window and its picture back: closed is what it mostly is. Showing makes new ones.
class TopLevelWindow final : public QWidget {
public:
    TopLevelWindow();

protected:
    void closeEvent(QCloseEvent* event) override;
};

} // namespace brisk
