#include "ui/onboarding_window.h"

#include "ui/application_icon.h"
#include "ui/face_glyph.h"
#include "ui/key_cap.h"
#include "ui/link_button.h"
#include "ui/symbols.h"
#include "ui/text_label.h"
#include "ui/top_level_window.h"
#include "ui/web_address.h"
#include "ui/window_placement.h"

#include <QEvent>
#include <QHBoxLayout>
#include <QPainter>
#include <QPushButton>
#include <QShortcut>
#include <QVBoxLayout>

#include <algorithm>
#include <utility>

namespace brisk {

namespace {

constexpr QSize contentSize{480, 430};
constexpr int stepMargin = 36;
/// How far the middle of the step lies above the middle of the window.
constexpr int stepRise = 16;
constexpr int buttonMargin = 24;
constexpr int buttonBottom = 20;
constexpr QSize smallestButton{110, 30};
/// Room around the title beyond what the style leaves.
constexpr int buttonPadding = 20;
constexpr int statusSpacing = 12;
constexpr int bodyWidth = 372;

/// A picture that is drawn from the palette of the moment.
class Picture final : public QLabel {
public:
    using Draw = std::function<void(QPainter&, const QRect&, const QPalette&)>;

    Picture(const QSize& size, Draw draw) : draw_(std::move(draw)) { setFixedSize(size); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        draw_(painter, rect(), palette());
    }

private:
    Draw draw_;
};

Picture* makeApplicationIcon() {
    auto* const icon = new Picture({108, 108}, [](QPainter& painter, const QRect& place, const QPalette& palette) {
        applicationIcon(themeColor(ColorRole::label, palette)).paint(&painter, place);
    });
    icon->setAccessibleName(QString::fromUtf8(applicationIconDescription));
    return icon;
}

Picture* makePermissionSymbol() {
    return new Picture({64, 64}, [](QPainter& painter, const QRect& place, const QPalette& palette) {
        painter.drawPixmap(place.topLeft(),
                           symbolPixmap(QStringLiteral("lock.shield"), place.height(),
                                        themeColor(ColorRole::accent, palette), painter.device()->devicePixelRatioF()));
    });
}

Picture* makeFace() {
    auto* const face = new Picture({18, 18}, [](QPainter& painter, const QRect& place, const QPalette& palette) {
        // As many pixels as it gets on the screen, not scaled afterwards.
        const double scale = double(place.width()) / menuBarFaceSize.width();
        const double ratio = painter.device()->devicePixelRatioF();
        QImage image = menuBarFaceImage(themeColor(ColorRole::label, palette), ratio * scale);
        image.setDevicePixelRatio(ratio);
        painter.drawImage(QPointF(0, (place.height() - image.deviceIndependentSize().height()) / 2), image);
    });
    face->setAccessibleName(QString::fromUtf8(menuBarFaceDescription));
    return face;
}

/// A text of as many lines as it takes in that width.
TextLabel* makeText(const std::string& text, const TextLook& look, int width) {
    auto* const label = new TextLabel(QString::fromStdString(text), look);
    label->setFixedSize(width, label->heightForWidth(width));
    return label;
}

} // namespace

BriskOnboardingWindow::BriskOnboardingWindow(OnboardingWindowServices services, std::function<void()> onFinish)
    : services_(std::move(services)),
      productPage_(webAddress(services_.productPageAddress)),
      onFinish_(std::move(onFinish)),
      guide_(std::make_shared<OnboardingGuide>(
          services_.accessibility, services_.mainQueue,
          OnboardingGuide::Callbacks{.onStepShown = [this] { showStep(); }, .onClose = [this] { window_->close(); }})),
      window_(new TopLevelWindow),
      content_(new QWidget(window_.get())),
      stepPlace_(new QVBoxLayout),
      primaryButton_(new QPushButton(content_)),
      statusLabel_(new TextLabel({}, {.pixelSize = 12, .color = ColorRole::secondaryLabel}, content_)) {
    window_->setObjectName("BriskOnboarding");
    window_->setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                            Qt::WindowCloseButtonHint);
    window_->installEventFilter(this);
    auto* const menuAndContent = new QVBoxLayout(window_.get());
    menuAndContent->setContentsMargins({});
    menuAndContent->setSizeConstraint(QLayout::SetFixedSize);
    if (QWidget* const menuBar = services_.makeMenuBar ? services_.makeMenuBar(window_.get()) : nullptr) {
        menuAndContent->setMenuBar(menuBar);
    }
    menuAndContent->addWidget(content_);

    statusLabel_->setObjectName("status");
    primaryButton_->setObjectName("primaryButton");
    primaryButton_->setDefault(true);
    primaryButton_->setMinimumSize(smallestButton);
    primaryButton_->setFixedHeight(std::max(smallestButton.height(), primaryButton_->sizeHint().height()));
    primaryButton_->setFocus();
    connect(primaryButton_, &QPushButton::clicked, this, &BriskOnboardingWindow::advance);
    for (const Qt::Key key : {Qt::Key_Return, Qt::Key_Enter}) {
        auto* const shortcut = new QShortcut(key, window_.get());
        // Holding the key must not run through the guide.
        shortcut->setAutoRepeat(false);
        connect(shortcut, &QShortcut::activated, primaryButton_, &QPushButton::click);
    }

    auto* const down = new QVBoxLayout(content_);
    down->setContentsMargins({});
    down->setSpacing(0);
    // What the button's row takes at the bottom, less what the step lies higher than the middle.
    down->addSpacing(primaryButton_->height() + buttonBottom - 2 * stepRise);
    down->addStretch(1);
    stepPlace_->setContentsMargins(stepMargin, 0, stepMargin, 0);
    down->addLayout(stepPlace_);
    down->addStretch(1);
    auto* const row = new QHBoxLayout;
    row->setContentsMargins(buttonMargin, 0, buttonMargin, buttonBottom);
    row->setSpacing(statusSpacing);
    row->addWidget(statusLabel_, 1);
    row->addWidget(primaryButton_);
    down->addLayout(row);

    guide_->begin();
}

BriskOnboardingWindow::~BriskOnboardingWindow() {
    guide_->windowWillClose();
    window_->removeEventFilter(this);
}

void BriskOnboardingWindow::showWindow() {
    if (!window_->isVisible()) {
        window_->layout()->activate();
        centreOnScreen(*window_);
    }
    bringToFront(*window_);
}

bool BriskOnboardingWindow::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window_.get() && event->type() == QEvent::Close) {
        windowWillClose();
        return false; // this object may be gone
    }
    return QObject::eventFilter(watched, event);
}

void BriskOnboardingWindow::windowWillClose() {
    guide_->windowWillClose();
    if (const auto onFinish = std::exchange(onFinish_, nullptr)) {
        onFinish();
    }
}

void BriskOnboardingWindow::advance() {
    // Held: the last step closes the window, which may release this object.
    const auto guide = guide_;
    guide->advance();
}

void BriskOnboardingWindow::showStep() {
    window_->setWindowTitle(QString::fromStdString(onboardingText(guide_->step()).windowTitle));
    delete step_;
    step_ = makeStep();
    stepPlace_->addWidget(step_, 0, Qt::AlignHCenter);
    statusLabel_->setText(QString::fromStdString(guide_->statusText()));
    primaryButton_->setText(QString::fromStdString(guide_->primaryButtonTitle()));
    primaryButton_->setMinimumWidth(
        std::max(smallestButton.width(), primaryButton_->sizeHint().width() + buttonPadding));
    // Larger only where a text or a font would not fit otherwise.
    content_->setFixedSize(contentSize.expandedTo(content_->layout()->totalMinimumSize()));
}

QWidget* BriskOnboardingWindow::makeStep() const {
    auto* const step = new QWidget(content_);
    auto* const stack = new QVBoxLayout(step);
    stack->setContentsMargins({});
    stack->setSpacing(0);
    const auto add = [&](QWidget* item, int spaceAfter) {
        stack->addWidget(item, 0, Qt::AlignHCenter);
        stack->addSpacing(spaceAfter);
    };
    const OnboardingText text = onboardingText(guide_->step());
    const auto addTitle = [&](int spaceAfter) {
        add(makeText(text.title,
                     {.pixelSize = 22, .weight = QFont::DemiBold, .maximumLines = 2, .alignment = Qt::AlignHCenter},
                     contentSize.width() - 2 * stepMargin),
            spaceAfter);
    };
    const auto addBody = [&](std::size_t index, int spaceAfter) {
        add(makeText(text.body.at(index), {.color = ColorRole::secondaryLabel, .maximumLines = 0}, bodyWidth),
            spaceAfter);
    };
    switch (guide_->step()) {
    case OnboardingStep::welcome:
        add(makeApplicationIcon(), 22);
        addTitle(12);
        addBody(0, 10);
        addBody(1, 0);
        break;
    case OnboardingStep::accessibility:
        add(makePermissionSymbol(), 20);
        addTitle(12);
        addBody(0, 10);
        addBody(1, 0);
        break;
    case OnboardingStep::ready:
        addTitle(10);
        addBody(0, 18);
        add(makeShortcutList(), 20);
        add(makeMenuBarHint(), productPage_.isEmpty() ? 0 : 16);
        if (!productPage_.isEmpty()) {
            add(makeProductPageLink(), 0);
        }
        break;
    }
    return step;
}

QWidget* BriskOnboardingWindow::makeShortcutList() const {
    auto* const list = new QWidget;
    auto* const rows = new QVBoxLayout(list);
    rows->setContentsMargins({});
    rows->setSpacing(8);
    for (const OnboardingShortcut& shortcut : onboardingShortcuts()) {
        auto* const row = new QHBoxLayout;
        row->setSpacing(14);
        row->addWidget(new KeyCap(QString::fromStdString(shortcut.display)));
        row->addWidget(new TextLabel(QString::fromStdString(shortcut.title), {.isCompressible = false}));
        row->addStretch(1);
        rows->addLayout(row);
    }
    return list;
}

QWidget* BriskOnboardingWindow::makeMenuBarHint() const {
    auto* const hint = new QWidget;
    auto* const row = new QHBoxLayout(hint);
    row->setContentsMargins({});
    row->setSpacing(8);
    row->addWidget(makeFace());
    row->addWidget(new TextLabel(QString::fromUtf8(menuBarHint),
                                 {.pixelSize = 12, .color = ColorRole::secondaryLabel, .isCompressible = false}));
    return hint;
}

QWidget* BriskOnboardingWindow::makeProductPageLink() const {
    const QString address = QString::fromStdString(services_.productPageAddress);
    const QString prefix = QStringLiteral("https://");
    auto* const link = new LinkButton(address.startsWith(prefix) ? address.sliced(prefix.size()) : address);
    link->setObjectName("productPage");
    connect(link, &QPushButton::clicked, this,
            [this] { services_.links.openURL(productPage_.toString(QUrl::FullyEncoded).toStdString()); });
    return link;
}

} // namespace brisk
