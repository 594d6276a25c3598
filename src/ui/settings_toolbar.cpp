#include "ui/settings_toolbar.h"

#include "ui/symbols.h"
#include "ui/theme.h"

#include <QFocusEvent>
#include <QPainter>
#include <QSignalBlocker>

#include <algorithm>

namespace brisk {

namespace {

constexpr int symbolSize = 24;
constexpr int itemPixelSize = 11;
constexpr int labelSpacing = 2;
constexpr int itemInset = 6;
constexpr int gapBetweenItems = 4;
constexpr int minimumItemWidth = 68;
constexpr double fieldRadius = 6;
constexpr double focusWidth = 2;

} // namespace

SettingsToolbar::SettingsToolbar(QWidget* parent) : QTabBar(parent) {
    setObjectName("toolbar");
    setAccessibleName(QStringLiteral("Settings panes"));
    setFont(themeFont(itemPixelSize));
    setDrawBase(false);
    setExpanding(false);
    setUsesScrollButtons(false);
    setElideMode(Qt::ElideNone);
    setFocusPolicy(Qt::StrongFocus);
    for (const SettingsPane pane : allSettingsPanes) {
        const QString name = QString::fromUtf8(title(pane).data(), static_cast<qsizetype>(title(pane).size()));
        const int index = addTab(name);
        setTabToolTip(index, name);
        setTabData(index, QString::fromStdString(toolbarItemIdentifier(pane)));
    }
    connect(this, &QTabBar::currentChanged, this, [this](int index) {
        if (const auto pane = settingsPaneOfToolbarItem(tabData(index).toString().toStdString())) {
            emit paneChosen(*pane);
        }
    });
}

void SettingsToolbar::setSelectedPane(SettingsPane pane) {
    const QSignalBlocker quiet(this);
    const QString identifier = QString::fromStdString(toolbarItemIdentifier(pane));
    for (int index = 0; index < count(); ++index) {
        if (tabData(index).toString() == identifier) {
            setCurrentIndex(index);
        }
    }
    update();
}

int SettingsToolbar::widestLabel() const {
    int width = 0;
    for (int index = 0; index < count(); ++index) {
        width = std::max(width, fontMetrics().horizontalAdvance(tabText(index)));
    }
    return width;
}

QSize SettingsToolbar::tabSizeHint(int) const {
    const int width = std::max(minimumItemWidth, widestLabel() + 2 * itemInset) + gapBetweenItems;
    return {width, itemInset + symbolSize + labelSpacing + fontMetrics().lineSpacing() + itemInset};
}

void SettingsToolbar::focusInEvent(QFocusEvent* event) {
    showsFocus_ = event->reason() == Qt::TabFocusReason || event->reason() == Qt::BacktabFocusReason;
    QTabBar::focusInEvent(event);
}

void SettingsToolbar::focusOutEvent(QFocusEvent* event) {
    showsFocus_ = false;
    QTabBar::focusOutEvent(event);
}

void SettingsToolbar::keyPressEvent(QKeyEvent* event) {
    showsFocus_ = true;
    QTabBar::keyPressEvent(event);
}

void SettingsToolbar::paintEvent(QPaintEvent*) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    for (int index = 0; index < count(); ++index) {
        const QRect item = tabRect(index).adjusted(gapBetweenItems / 2, 0, -gapBetweenItems / 2, 0);
        const bool isSelected = index == currentIndex();
        if (isSelected) {
            painter.setPen(Qt::NoPen);
            painter.setBrush(themeColor(ColorRole::separator, palette()));
            painter.drawRoundedRect(item, fieldRadius, fieldRadius);
        }
        const auto pane = settingsPaneOfToolbarItem(tabData(index).toString().toStdString());
        if (!pane) {
            continue;
        }
        const std::string_view symbol = symbolName(*pane);
        const QColor tint = themeColor(isSelected ? ColorRole::accent : ColorRole::secondaryLabel, palette());
        painter.drawPixmap(item.left() + (item.width() - symbolSize) / 2, item.top() + itemInset,
                           symbolPixmap(QString::fromUtf8(symbol.data(), static_cast<qsizetype>(symbol.size())),
                                        symbolSize, tint, devicePixelRatioF()));
        painter.setPen(themeColor(isSelected ? ColorRole::label : ColorRole::secondaryLabel, palette()));
        painter.drawText(item.adjusted(0, itemInset + symbolSize + labelSpacing, 0, -itemInset),
                         Qt::AlignHCenter | Qt::AlignTop, tabText(index));
        if (isSelected && showsFocus_) {
            painter.setPen(QPen(themeColor(ColorRole::accent, palette()), focusWidth));
            painter.setBrush(Qt::NoBrush);
            constexpr double half = focusWidth / 2;
            painter.drawRoundedRect(QRectF(item).adjusted(half, half, -half, -half), fieldRadius, fieldRadius);
        }
    }
}

} // namespace brisk
