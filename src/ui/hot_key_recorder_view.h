#pragma once

#include "hotkeys/hot_key_recorder.h"
#include "platform/hot_key_service.h"
#include "platform/key_input.h"
#include "ui/valued_control.h"

#include <QPushButton>

#include <functional>
#include <optional>
#include <string>

namespace brisk {

/// What recording a shortcut needs of the desktop. Outlives the views it is given to.
struct HotKeyRecorderServices {
    HotKeyService& hotKeys;
    KeyInput& keyInput;
    MainQueue& mainQueue;
};

/// The small button through which a command's shortcut is assigned, replaced or cleared. While it records, the
/// program's own hot keys are suspended and the keyboard is grabbed, so that any combination reaches it; whatever ends
/// the recording ends both.
class HotKeyRecorderView final : public QPushButton, public ValuedControl, private HotKeyRecorderControl {
    Q_OBJECT

public:
    HotKeyRecorderView(std::optional<HotKeyBinding> binding, const HotKeyRecorderServices& services,
                       QWidget* parent = nullptr);
    ~HotKeyRecorderView() override;

    const std::optional<HotKeyBinding>& binding() const { return recorder_.binding(); }
    bool isRecordingShortcut() const { return recorder_.isRecordingShortcut(); }

    // Each may be left out. `onRecorded` and `onCleared` may delete this view with deleteLater, not at once.

    /// Why a shortcut may not be had, or nothing where it may.
    std::function<std::optional<std::string>(const HotKeyBinding&)> validationMessage;
    std::function<void(const HotKeyBinding&)> onRecorded;
    std::function<void()> onCleared;

    /// As wide as the title wants, up to a limit: what another command is called may be of any length.
    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    QString accessibilityValue() const override;

protected:
    bool event(QEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void keyPressedWhileRecording(const QKeyEvent& event);
    void showRecorder();

    void recorderChanged() override;
    void recordingBegan() override;
    void recordingEnded() override;
    void becomeFirstResponder() override;
    void resignFirstResponder() override;
    void beep() override;

    HotKeyRecorderServices services_;
    HotKeyRecorder recorder_;
    std::optional<HotKeySuspension> hotKeySuspension_;
};

} // namespace brisk
