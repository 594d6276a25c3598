#include "hotkeys/hot_key_recorder.h"

#include "hotkeys/binding_from_key.h"
#include "hotkeys/virtual_keys.h"

#include <utility>

namespace brisk {

HotKeyRecorder::HotKeyRecorder(std::optional<HotKeyBinding> binding, MainQueue& mainQueue,
                               HotKeyRecorderControl& control)
    : binding_(std::move(binding)), mainQueue_(mainQueue), control_(control) {}

HotKeyRecorder::~HotKeyRecorder() {
    cancelFeedbackReset();
}

std::string HotKeyRecorder::title() const {
    switch (state_) {
    case State::recording:
        return "Type Shortcut";
    case State::refused:
        return refusal_;
    case State::idle:
        break;
    }
    return binding_ ? binding_->display : emptyTitle;
}

HotKeyRecorder::Tint HotKeyRecorder::tint() const {
    switch (state_) {
    case State::recording:
        return Tint::accent;
    case State::refused:
        return Tint::red;
    case State::idle:
        break;
    }
    return Tint::none;
}

std::string HotKeyRecorder::accessibilityValue() const {
    if (state_ == State::recording) {
        return "Recording";
    }
    return binding_ ? binding_->display : "Not assigned";
}

void HotKeyRecorder::beginRecording() {
    cancelFeedbackReset();
    if (std::exchange(state_, State::recording) != State::recording) {
        control_.recordingBegan();
    }
    control_.recorderChanged();
    control_.becomeFirstResponder();
}

bool HotKeyRecorder::keyDown(const KeyEvent& event) {
    if (state_ != State::recording) {
        return false;
    }
    switch (event.keyCode) {
    case kVK_Escape:
        endRecording(State::idle);
        control_.resignFirstResponder();
        return true;
    case kVK_Delete:
    case kVK_ForwardDelete:
        clear();
        return true;
    default:
        break;
    }
    const auto candidate = bindingFromKeyEvent(event);
    if (!candidate) {
        control_.beep();
        return true;
    }
    if (auto message = validationMessage ? validationMessage(*candidate) : std::nullopt) {
        refuse(std::move(*message));
    } else {
        accept(*candidate);
    }
    return true;
}

void HotKeyRecorder::resignFirstResponder() {
    if (state_ == State::recording) {
        endRecording(State::idle);
        control_.resignFirstResponder();
    }
}

void HotKeyRecorder::endRecording(State next) {
    state_ = next;
    control_.recordingEnded();
    control_.recorderChanged();
}

void HotKeyRecorder::clear() {
    binding_.reset();
    endRecording(State::idle);
    control_.resignFirstResponder();
    if (const auto report = onCleared) {
        report();
    }
}

void HotKeyRecorder::accept(const HotKeyBinding& binding) {
    binding_ = binding;
    endRecording(State::idle);
    control_.resignFirstResponder();
    // Copies: the owner may replace the whole control, this with it.
    if (const auto report = onRecorded) {
        report(binding);
    }
}

void HotKeyRecorder::refuse(std::string message) {
    control_.beep();
    refusal_ = std::move(message);
    endRecording(State::refused);
    control_.resignFirstResponder();
    cancelFeedbackReset();
    feedbackResetWorkItem_ = mainQueue_.asyncAfter(refusalTime, [weak = std::weak_ptr(self_)] {
        if (const auto self = weak.lock()) {
            (*self)->feedbackResetWorkItem_.reset();
            (*self)->state_ = State::idle;
            (*self)->control_.recorderChanged();
        }
    });
}

void HotKeyRecorder::cancelFeedbackReset() {
    if (const auto item = std::exchange(feedbackResetWorkItem_, nullptr)) {
        item->cancel();
    }
}

} // namespace brisk
