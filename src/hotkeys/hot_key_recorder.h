#pragma once

#include "hotkeys/hot_key_binding.h"
#include "platform/key_event.h"
#include "platform/main_queue.h"

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace brisk {

/// What a recorder asks of the control that shows it.
class HotKeyRecorderControl {
public:
    virtual ~HotKeyRecorderControl() = default;
    /// Title, tint or accessibility value are to be read again.
    virtual void recorderChanged() = 0;
    /// Keys are wanted from here on, also those that are somebody's shortcut; and no longer.
    virtual void recordingBegan() = 0;
    virtual void recordingEnded() = 0;
    virtual void becomeFirstResponder() = 0;
    /// The window is to have no first responder. May come back as `HotKeyRecorder::resignFirstResponder`.
    virtual void resignFirstResponder() = 0;
    virtual void beep() = 0;
};

/// Records the shortcut of one command: a click, then the keys. Main thread only. Telling its owner is the last thing
/// it does with a key, so the owner may end its life then.
class HotKeyRecorder {
public:
    enum class Tint { none, accent, red };

    /// The title without a shortcut.
    static constexpr const char* emptyTitle = "Record Shortcut";

    /// How long a refusal stays before the shortcut is shown again.
    static constexpr std::chrono::milliseconds refusalTime{1150};

    HotKeyRecorder(std::optional<HotKeyBinding> binding, MainQueue& mainQueue, HotKeyRecorderControl& control);
    HotKeyRecorder(const HotKeyRecorder&) = delete;
    HotKeyRecorder& operator=(const HotKeyRecorder&) = delete;
    ~HotKeyRecorder();

    /// Why a shortcut may not be had, or nothing where it may. Each may be left out.
    std::function<std::optional<std::string>(const HotKeyBinding&)> validationMessage;
    std::function<void(const HotKeyBinding&)> onRecorded;
    std::function<void()> onCleared;

    const std::optional<HotKeyBinding>& binding() const { return binding_; }
    bool isRecordingShortcut() const { return state_ == State::recording; }
    bool isRefusing() const { return state_ == State::refused; }
    std::string title() const;
    Tint tint() const;
    std::string accessibilityValue() const;

    /// The control was clicked.
    void beginRecording();
    /// A key went down in the control; false leaves it to the control, as any key while nothing is recorded.
    bool keyDown(const KeyEvent& event);
    /// The control loses the keyboard.
    void resignFirstResponder();

private:
    enum class State { idle, recording, refused };

    void endRecording(State next);
    void clear();
    void accept(const HotKeyBinding& binding);
    void refuse(std::string message);
    void cancelFeedbackReset();

    std::optional<HotKeyBinding> binding_;
    MainQueue& mainQueue_;
    HotKeyRecorderControl& control_;
    State state_ = State::idle;
    std::string refusal_;
    /// The pending end of a refusal, if any.
    DispatchWorkItemRef feedbackResetWorkItem_;
    /// What scheduled work holds weakly.
    std::shared_ptr<HotKeyRecorder*> self_ = std::make_shared<HotKeyRecorder*>(this);
};

/// What every recorder says of itself, also to assistive technology.
inline constexpr const char* hotKeyRecorderLabel = "Window shortcut";
inline constexpr const char* hotKeyRecorderHelp = "Click, then press a shortcut. Press Delete to clear.";

} // namespace brisk
