#include "ui/hot_key_recorder_view.h"

#include "hotkeys/function_keys.h"
#include "ui/theme.h"

#include <QKeyEvent>
#include <QPointer>
#include <QStyleOptionButton>
#include <QStylePainter>

#include <algorithm>
#include <utility>

namespace brisk {

namespace {

constexpr int controlHeight = 24;
constexpr int minimumControlWidth = 88;
constexpr int maximumControlWidth = 240;

/// Keeps the key that ended a recording, while it is still held, from meaning anything else: Escape repeated would
/// close the window, and a shortcut of our own menus would be carried out. Goes when that key does: other keys, the
/// modifiers of the combination among them, come and go meanwhile.
class HeldKeyFilter final : public QObject {
public:
    HeldKeyFilter(QWidget& window, quint32 scanCode) : QObject(&window), scanCode_(scanCode) {
        window.installEventFilter(this);
    }

    bool eventFilter(QObject*, QEvent* event) override {
        switch (event->type()) {
        case QEvent::ShortcutOverride:
        case QEvent::KeyPress:
        case QEvent::KeyRelease:
            break;
        default:
            return false;
        }
        const auto& key = *static_cast<QKeyEvent*>(event);
        if (key.nativeScanCode() != scanCode_) {
            return false;
        }
        if (key.isAutoRepeat()) {
            event->accept();
            return true;
        }
        deleteLater();
        return false;
    }

private:
    const quint32 scanCode_;
};

/// One line of text, whatever a layout's name in it contains.
QString asOneLine(const std::string& text) {
    return QString::fromStdString(text).simplified();
}

/// Shown to the letter: an ampersand is not a mnemonic.
QString asLabel(QString text) {
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

HotKeyRecorderView::HotKeyRecorderView(std::optional<HotKeyBinding> binding, const HotKeyRecorderServices& services,
                                       QWidget* parent)
    : QPushButton(parent), services_(services), recorder_(std::move(binding), services.mainQueue, *this) {
    recorder_.validationMessage = [this](const HotKeyBinding& candidate) {
        return validationMessage ? validationMessage(candidate) : std::nullopt;
    };
    recorder_.onRecorded = [this](const HotKeyBinding& recorded) {
        if (onRecorded) {
            onRecorded(recorded);
        }
    };
    recorder_.onCleared = [this] {
        if (onCleared) {
            onCleared();
        }
    };
    // Return is the dialog's, whose default button it presses; Space presses this one.
    setAutoDefault(false);
    setFocusPolicy(Qt::StrongFocus);
    setFont(themeFont(12));
    setMinimumWidth(minimumControlWidth);
    setFixedHeight(controlHeight);
    setSizePolicy(QSizePolicy::Maximum, QSizePolicy::Fixed);
    connect(this, &QPushButton::clicked, this, [this] { recorder_.beginRecording(); });
    showRecorder();
}

HotKeyRecorderView::~HotKeyRecorderView() {
    recordingEnded();
}

QSize HotKeyRecorderView::sizeHint() const {
    // The same for all ordinary titles: what is beside it should not move at a click, and rows should be in line.
    const auto widthOf = [this](const QString& title) {
        return fontMetrics().horizontalAdvance(title) + 2 * buttonTitleMargin;
    };
    const int wanted = std::max(
        {QPushButton::sizeHint().width(), widthOf(text()), widthOf(QLatin1String(HotKeyRecorder::emptyTitle))});
    return {std::clamp(wanted, minimumControlWidth, maximumControlWidth), controlHeight};
}

QSize HotKeyRecorderView::minimumSizeHint() const {
    return {minimumControlWidth, controlHeight};
}

QString HotKeyRecorderView::accessibilityValue() const {
    return QString::fromStdString(legibleDisplay(recorder_.accessibilityValue()));
}

bool HotKeyRecorderView::event(QEvent* event) {
    // Ahead of the toolkit's own ideas about Tab, Escape, mnemonics and the menus' shortcuts.
    if (recorder_.isRecordingShortcut()) {
        switch (event->type()) {
        case QEvent::KeyPress:
            event->accept();
            keyPressedWhileRecording(*static_cast<QKeyEvent*>(event));
            return true;
        case QEvent::ShortcutOverride:
        case QEvent::KeyRelease:
            event->accept();
            return true;
        default:
            break;
        }
    }
    return QPushButton::event(event);
}

void HotKeyRecorderView::keyPressedWhileRecording(const QKeyEvent& event) {
    if (event.isAutoRepeat()) {
        return;
    }
    const auto key = services_.keyInput.keyDown({.keyCode = event.nativeScanCode(), .state = event.nativeModifiers()});
    if (!key) {
        return;
    }
    // The owner may replace this view with what it is told.
    const QPointer<QWidget> ownWindow = window();
    const QPointer<HotKeyRecorderView> self = this;
    recorder_.keyDown(*key);
    const bool goesOn = self && self->isRecordingShortcut();
    if (ownWindow && !goesOn) {
        new HeldKeyFilter(*ownWindow, event.nativeScanCode());
    }
}

void HotKeyRecorderView::focusOutEvent(QFocusEvent* event) {
    recorder_.resignFirstResponder();
    QPushButton::focusOutEvent(event);
}

void HotKeyRecorderView::hideEvent(QHideEvent* event) {
    recorder_.resignFirstResponder();
    QPushButton::hideEvent(event);
}

void HotKeyRecorderView::paintEvent(QPaintEvent*) {
    QStyleOptionButton option;
    initStyleOption(&option);
    const int available = style()->subElementRect(QStyle::SE_PushButtonContents, &option, this).width();
    option.text =
        asLabel(fontMetrics().elidedText(asOneLine(legibleDisplay(recorder_.title())), Qt::ElideRight, available));
    const auto tint = [&](ColorRole role) {
        option.palette.setColor(QPalette::ButtonText, readableOn(palette().color(QPalette::Active, QPalette::Button),
                                                                 themeColor(role, palette())));
    };
    switch (recorder_.tint()) {
    case HotKeyRecorder::Tint::accent:
        tint(ColorRole::accent);
        break;
    case HotKeyRecorder::Tint::red:
        tint(ColorRole::red);
        break;
    case HotKeyRecorder::Tint::none:
        break;
    }
    QStylePainter painter(this);
    // Keys stand in the order in which they are named, whatever way the user reads.
    painter.setLayoutDirection(Qt::LeftToRight);
    painter.drawControl(QStyle::CE_PushButton, option);
}

void HotKeyRecorderView::showRecorder() {
    const QString help = QString::fromLatin1(hotKeyRecorderHelp);
    const QString title = asOneLine(legibleDisplay(recorder_.title()));
    setText(asLabel(title));
    // A refusal may not fit.
    setToolTip(recorder_.isRefusing() ? title : help);
    describeTo(*this, QString::fromLatin1(hotKeyRecorderLabel), help);
    update();
}

void HotKeyRecorderView::recorderChanged() {
    showRecorder();
}

void HotKeyRecorderView::recordingBegan() {
    hotKeySuspension_.emplace(services_.hotKeys);
    // The toolkit's own grab: a grabbed keyboard reports to the client that grabbed it.
    grabKeyboard();
}

void HotKeyRecorderView::recordingEnded() {
    if (hotKeySuspension_) {
        releaseKeyboard();
        hotKeySuspension_.reset();
    }
}

void HotKeyRecorderView::becomeFirstResponder() {
    setFocus();
}

void HotKeyRecorderView::resignFirstResponder() {
    clearFocus();
}

void HotKeyRecorderView::beep() {
    services_.keyInput.beep();
}

} // namespace brisk
