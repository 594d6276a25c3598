#pragma once

#include "app/onboarding_guide.h"
#include "app/program_windows.h"
#include "platform/link_opener.h"

#include <QObject>
#include <QUrl>

#include <functional>
#include <memory>
#include <string>

class QPushButton;
class QVBoxLayout;
class QWidget;

namespace brisk {

class TextLabel;

/// What the window of the first-run guide needs around it. Outlives the window.
struct OnboardingWindowServices {
    AccessibilityPlatform& accessibility;
    MainQueue& mainQueue;
    LinkOpener& links;
    /// Linked to on the last step; without a web address there is no link.
    std::string productPageAddress;
    /// The program's main menu for a window of its own, which owns it; may give none.
    std::function<QWidget*(QWidget* window)> makeMenuBar;
};

/// The small window of the first-run guide: the step, and one button that Return presses. Main thread only.
class BriskOnboardingWindow final : public QObject, public OnboardingWindow {
    Q_OBJECT

public:
    /// `onFinish` is called once, when the window is about to close, and may release this object.
    BriskOnboardingWindow(OnboardingWindowServices services, std::function<void()> onFinish);
    ~BriskOnboardingWindow() override;

    void showWindow() override;

    QWidget& window() { return *window_; }

    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    /// Released from inside the window's own closing: the window goes when that is over.
    struct DeleteLater {
        void operator()(QObject* object) const { object->deleteLater(); }
    };

    void advance();
    void showStep();
    QWidget* makeStep() const;
    QWidget* makeShortcutList() const;
    QWidget* makeMenuBarHint() const;
    QWidget* makeProductPageLink() const;
    void windowWillClose();

    OnboardingWindowServices services_;
    QUrl productPage_;
    std::function<void()> onFinish_;
    std::shared_ptr<OnboardingGuide> guide_;
    std::unique_ptr<QWidget, DeleteLater> window_;
    QWidget* content_;
    QVBoxLayout* stepPlace_;
    QPushButton* primaryButton_;
    TextLabel* statusLabel_;
    QWidget* step_ = nullptr;
};

} // namespace brisk
