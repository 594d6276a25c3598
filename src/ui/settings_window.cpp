#include "ui/settings_window.h"

#include "app/product.h"
#include "app/sync_pane.h"
#include "app/version_text.h"
#include "app/windows_pane.h"
#include "ui/about_view.h"
#include "ui/general_pane.h"
#include "ui/settings_page.h"
#include "ui/settings_toolbar.h"
#include "ui/sync_pane.h"
#include "ui/top_level_window.h"
#include "ui/window_placement.h"
#include "ui/windows_pane.h"

#include <QApplication>
#include <QScreen>
#include <QScrollBar>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <chrono>
#include <utility>

namespace brisk {

namespace {

constexpr int windowWidth = 720;
constexpr int toolbarMargin = 6;
constexpr std::chrono::milliseconds heightChangeDuration{150};
/// What the window's frame and a panel may take of the screen's height.
constexpr int heightLeftFree = 48;

/// Where the user is in a pane, to be there again after it has been rebuilt.
struct PlaceInPane {
    int scrollPosition = 0;
    /// The control with the focus: by its name, or where that is gone, the one that took its place.
    QString focusedName;
    qsizetype focusedIndex = -1;
};

QList<QWidget*> controlsIn(QWidget& pane) {
    QList<QWidget*> controls;
    for (QWidget* const widget : pane.findChildren<QWidget*>()) {
        if ((widget->focusPolicy() & Qt::TabFocus) != 0 && widget->isEnabled() && !widget->focusProxy()) {
            controls.append(widget);
        }
    }
    return controls;
}

PlaceInPane placeIn(QWidget& pane) {
    PlaceInPane place;
    if (const auto* const page = qobject_cast<QScrollArea*>(&pane)) {
        place.scrollPosition = page->verticalScrollBar()->value();
    }
    if (QWidget* const focused = pane.window()->focusWidget(); focused != nullptr && pane.isAncestorOf(focused)) {
        place.focusedName = focused->objectName();
        place.focusedIndex = controlsIn(pane).indexOf(focused);
    }
    return place;
}

void returnTo(const PlaceInPane& place, QWidget& pane) {
    if (const auto* const page = qobject_cast<QScrollArea*>(&pane)) {
        page->verticalScrollBar()->setValue(place.scrollPosition);
    }
    if (place.focusedIndex < 0) {
        return;
    }
    auto* focused = pane.findChild<QWidget*>(place.focusedName);
    const QList<QWidget*> controls = controlsIn(pane);
    if (focused == nullptr && !controls.isEmpty()) {
        focused = controls.at(std::min(place.focusedIndex, controls.size() - 1));
    }
    if (focused != nullptr) {
        focused->setFocus();
    }
}

} // namespace

BriskSettingsWindowController::BriskSettingsWindowController(SettingsWindowServices services, Callbacks callbacks)
    : services_(std::move(services)),
      callbacks_(std::move(callbacks)),
      window_(std::make_unique<TopLevelWindow>()),
      contentContainer_(new QWidget(window_.get())),
      toolbar_(new SettingsToolbar(window_.get())),
      windowGapField_(new WindowGapField(contentContainer_)),
      windowGapStepper_(new WindowGapStepper(contentContainer_)) {
    window_->setObjectName("BriskSettings");
    window_->setWindowTitle(QStringLiteral("Brisk Settings"));
    window_->setWindowFlags(Qt::Window | Qt::CustomizeWindowHint | Qt::WindowTitleHint | Qt::WindowSystemMenuHint |
                            Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint);
    window_->installEventFilter(this);

    auto* const down = new QVBoxLayout(window_.get());
    down->setContentsMargins({});
    down->setSpacing(0);
    down->setSizeConstraint(QLayout::SetFixedSize);
    if (QWidget* const menuBar = services_.makeMenuBar ? services_.makeMenuBar(window_.get()) : nullptr) {
        down->setMenuBar(menuBar);
    }
    down->addSpacing(toolbarMargin);
    down->addWidget(toolbar_, 0, Qt::AlignHCenter);
    down->addSpacing(toolbarMargin);
    down->addWidget(contentContainer_);
    contentContainer_->setFixedWidth(windowWidth);
    auto* const content = new QVBoxLayout(contentContainer_);
    content->setContentsMargins({});

    windowGapField_->hide();
    windowGapStepper_->hide();
    connect(windowGapField_, &WindowGapField::edited, this, [this](const QString& text) {
        if (const auto gap = typedWindowGap(text.toStdString())) {
            windowGapChanged(*gap);
        } else {
            // Not a number: as if nothing had been typed.
            showWindowGap();
        }
    });
    connect(windowGapStepper_, &WindowGapStepper::stepped, this, &BriskSettingsWindowController::windowGapChanged);
    connect(toolbar_, &SettingsToolbar::paneChosen, this, &BriskSettingsWindowController::select);
    connect(&heightAnimation_, &QVariantAnimation::valueChanged, this,
            [this](const QVariant& height) { setContentHeight(height.toInt()); });
    connect(qApp, &QGuiApplication::applicationStateChanged, this, [this](Qt::ApplicationState state) {
        if (state == Qt::ApplicationActive) {
            appDidBecomeActive();
        }
    });
    select(SettingsPane::general);
}

BriskSettingsWindowController::~BriskSettingsWindowController() {
    // A field that is being typed in reports what it has when it goes, which by then nobody could take.
    windowGapField_->disconnect(this);
}

void BriskSettingsWindowController::show(SettingsPane pane) {
    const bool isOpening = !window_->isVisible();
    if (isOpening) {
        // Before the pane is fitted to it.
        window_->setScreen(&screenUnderPointer());
    }
    select(pane);
    if (isOpening) {
        window_->layout()->activate();
        centreOnScreen(*window_);
    }
    bringToFront(*window_);
}

bool BriskSettingsWindowController::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window_.get() && event->type() == QEvent::Close && callbacks_.onClose) {
        callbacks_.onClose();
    }
    return QObject::eventFilter(watched, event);
}

void BriskSettingsWindowController::select(SettingsPane pane) {
    const bool isRebuild = paneView_ != nullptr && pane == selection_.selectedPane();
    const PlaceInPane place = isRebuild ? placeIn(*paneView_) : PlaceInPane{};

    selection_.select(pane);
    toolbar_->setSelectedPane(pane);
    window_->setWindowTitle(QString::fromStdString(settingsWindowTitle(pane)));

    // Out of the old pane before that goes. What was typed and not yet entered is entered by this.
    windowGapField_->setParent(contentContainer_);
    windowGapStepper_->setParent(contentContainer_);
    if (paneView_ != nullptr) {
        // One of its controls may have led here, and still has work to do.
        paneView_->hide();
        contentContainer_->layout()->removeWidget(paneView_);
        paneView_->deleteLater();
    }
    paneView_ = buildPane(pane);
    contentContainer_->layout()->addWidget(paneView_);
    fitWindowToPane();
    // At once, so that the pane is there to be scrolled and is not painted in passing.
    window_->layout()->activate();
    contentContainer_->layout()->activate();
    paneView_->show();
    returnTo(place, *paneView_);
}

QWidget* BriskSettingsWindowController::buildPane(SettingsPane pane) {
    switch (pane) {
    case SettingsPane::general:
        return buildGeneralPane();
    case SettingsPane::windows:
        return buildWindowsPane();
    case SettingsPane::sync:
        return buildSyncPane();
    case SettingsPane::about:
        return buildAboutPane();
    }
    return nullptr;
}

GeneralPane BriskSettingsWindowController::currentGeneralPane() const {
    return generalPane(services_.accessibility.AXIsProcessTrusted(), services_.loginItem.status());
}

QWidget* BriskSettingsWindowController::buildGeneralPane() {
    shownGeneralPane_ = currentGeneralPane();
    return makeGeneralPane(
        *shownGeneralPane_,
        {
            .openAccessibilitySettings = [this] { services_.links.openURL(accessibilityPrivacySettingsLink); },
            .openLoginItems = [this] { services_.loginItem.openSystemSettingsLoginItems(); },
            .setOpensAtLogin = [this](bool isWanted) { launchAtLoginChanged(isWanted); },
        });
}

QWidget* BriskSettingsWindowController::buildWindowsPane() {
    showWindowGap();
    return makeWindowsPane(
        windowsPane(services_.settingsStore.settings), *windowGapField_, *windowGapStepper_,
        {
            .setDragEnabled =
                [this](WindowLayout layout, bool isEnabled) {
                    services_.settingsStore.setDragEnabled(layout, isEnabled);
                    callbacks_.onSettingsChanged();
                },
            .addLayout = [this] { editCustomLayout(std::nullopt); },
            .editLayout = [this](const CustomWindowLayout& layout) { editCustomLayout(layout); },
            .removeLayout =
                [this](const CustomWindowLayout& layout) {
                    services_.settingsStore.removeCustomLayout(layout.id);
                    callbacks_.onSettingsChanged();
                    select(SettingsPane::windows);
                },
            .makeRecorder =
                [this](const CommandIdentifier& command, const std::optional<HotKeyBinding>& binding) {
                    return makeRecorder(command, binding);
                },
        });
}

QWidget* BriskSettingsWindowController::makeRecorder(const CommandIdentifier& command,
                                                     const std::optional<HotKeyBinding>& binding) {
    auto* const recorder = new HotKeyRecorderView(binding, services_.recorder);
    recorder->validationMessage = [this, command](const HotKeyBinding& candidate) {
        return services_.settingsStore.conflictMessage(candidate, command);
    };
    recorder->onRecorded = [this, command](const HotKeyBinding& recorded) {
        services_.settingsStore.assignHotkey(command, recorded);
        callbacks_.onSettingsChanged();
    };
    recorder->onCleared = [this, command] {
        services_.settingsStore.clearHotkey(command);
        callbacks_.onSettingsChanged();
    };
    return recorder;
}

QWidget* BriskSettingsWindowController::buildSyncPane() {
    return makeSyncPane(
        syncPane(services_.settingsStore.fileURL()),
        {
            .revealSettingsFile = [this] { services_.links.selectFile(services_.settingsStore.fileURL()); },
            .copySettingsPath = [this] { services_.pasteboard.setString(services_.settingsStore.fileURL().string()); },
        });
}

QWidget* BriskSettingsWindowController::buildAboutPane() {
    // Scrolls only where the screen is too low for it.
    auto* const page = new QScrollArea;
    page->setFrameShape(QFrame::NoFrame);
    page->setFocusPolicy(Qt::NoFocus);
    page->setWidgetResizable(true);
    page->setWidget(new BriskAboutView({.version = versionText(services_.bundle),
                                        .websiteAddress = std::string(product::websiteAddress),
                                        .makerLine = std::string(product::makerLine)},
                                       {.openWebsite = [this](const std::string& url) { services_.links.openURL(url); },
                                        .showAcknowledgements =
                                            [this] {
                                                services_.alerts.runModal(
                                                    {.messageText = "Acknowledgements",
                                                     .informativeText = std::string(product::acknowledgements)});
                                            }}));
    page->viewport()->setAutoFillBackground(false);
    page->widget()->setAutoFillBackground(false);
    return page;
}

void BriskSettingsWindowController::appDidBecomeActive() {
    // Back from the system's settings, permission and login item may have changed. Where they have not, the pane stays:
    // the click that brought the user back may just be on one of its controls.
    if (window_->isVisible() && selection_.selectedPane() == SettingsPane::general &&
        shownGeneralPane_ != currentGeneralPane()) {
        select(SettingsPane::general);
    }
}

void BriskSettingsWindowController::launchAtLoginChanged(bool isWanted) {
    if (const auto alert = setOpensAtLogin(services_.loginItem, isWanted)) {
        // The switch shows the truth behind the alert already.
        select(SettingsPane::general);
        services_.alerts.runModal(*alert);
    }
    if (selection_.selectedPane() == SettingsPane::general) {
        select(SettingsPane::general);
    }
}

void BriskSettingsWindowController::windowGapChanged(std::int64_t gap) {
    setWindowGap(services_.settingsStore, gap);
    showWindowGap();
    callbacks_.onSettingsChanged();
}

void BriskSettingsWindowController::showWindowGap() {
    windowGapField_->setValue(services_.settingsStore.settings.windowGap);
    windowGapStepper_->showValue(services_.settingsStore.settings.windowGap);
}

void BriskSettingsWindowController::editCustomLayout(const std::optional<CustomWindowLayout>& layout) {
    if (services_.editCustomLayout(*window_, layout)) {
        callbacks_.onSettingsChanged();
        select(SettingsPane::windows);
    }
}

void BriskSettingsWindowController::fitWindowToPane() {
    // A screen too low for the pane shows a part of it, which scrolls.
    const int aboveContent = window_->sizeHint().height() - contentContainer_->height();
    const int available = window_->screen()->availableGeometry().height() - heightLeftFree - aboveContent;
    const int height = std::min(contentHeight(selection_.selectedPane()), available);
    heightAnimation_.stop();
    if (height == contentContainer_->height()) {
        return;
    }
    const bool isAnimated = window_->isVisible() && window_->style()->styleHint(QStyle::SH_Widget_Animation_Duration,
                                                                                nullptr, window_.get()) > 0;
    if (!isAnimated) {
        setContentHeight(height);
        return;
    }
    heightAnimation_.setDuration(static_cast<int>(heightChangeDuration.count()));
    heightAnimation_.setEasingCurve(QEasingCurve::InOutQuad);
    heightAnimation_.setStartValue(contentContainer_->height());
    heightAnimation_.setEndValue(height);
    heightAnimation_.start();
}

void BriskSettingsWindowController::setContentHeight(int height) {
    // The top edge stays: the window's position is its top left corner's.
    contentContainer_->setFixedHeight(height);
    window_->layout()->activate();
}

} // namespace brisk
