#include "ui/settings_page.h"

#include "ui/symbols.h"
#include "ui/text_label.h"

#include <QHBoxLayout>
#include <QPainter>

namespace brisk {

namespace {

constexpr int stackWidth = 610;
constexpr int stackSpacing = 18;
constexpr int topMargin = 28;
constexpr int bottomMargin = 32;
constexpr int spaceBelowSectionTitle = 8;
constexpr int rowSpacing = 12;
constexpr int rowInset = 8;
constexpr int minimumRowHeight = 52;
constexpr int iconSpacing = 10;
constexpr int rowIconSize = 20;
constexpr int textSpacing = 2;
constexpr int accessorySpacing = 8;

class Separator final : public QWidget {
public:
    explicit Separator(QWidget* parent) : QWidget(parent) { setFixedHeight(1); }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).fillRect(rect(), themeColor(ColorRole::separator, palette()));
    }
};

/// Decorates the title beside it: assistive technology has no use for it.
class RowIcon final : public QWidget {
public:
    RowIcon(QString symbolName, QWidget* parent) : QWidget(parent), symbolName_(std::move(symbolName)) {
        setFixedSize(rowIconSize, rowIconSize);
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter(this).drawPixmap(0, 0,
                                  symbolPixmap(symbolName_, rowIconSize,
                                               themeColor(ColorRole::secondaryLabel, palette()), devicePixelRatioF()));
    }

private:
    QString symbolName_;
};

} // namespace

QWidget* accessoryGroup(std::initializer_list<QWidget*> controls) {
    auto* const group = new QWidget;
    auto* const row = new QHBoxLayout(group);
    row->setContentsMargins({});
    row->setSpacing(accessorySpacing);
    for (QWidget* const control : controls) {
        row->addWidget(control, 0, Qt::AlignVCenter);
        // Out of an earlier group a control comes hidden.
        control->show();
    }
    return group;
}

QWidget* accessoryText(const std::string& text) {
    return new TextLabel(QString::fromStdString(text), {.isCompressible = false});
}

SettingsSection::SettingsSection(const QString& title, QWidget* parent)
    : QWidget(parent), rows_(new QVBoxLayout(this)) {
    rows_->setContentsMargins({});
    rows_->setSpacing(0);
    rows_->addWidget(new TextLabel(title, {.weight = QFont::DemiBold}, this));
    rows_->addSpacing(spaceBelowSectionTitle);
}

void SettingsSection::addRow(const SettingsRow& row, QWidget* accessory) {
    if (hasRows_) {
        rows_->addWidget(new Separator(this));
    }
    hasRows_ = true;

    auto* const line = new QHBoxLayout;
    line->setContentsMargins(0, rowInset, 0, rowInset);
    line->setSpacing(rowSpacing);
    // Holds the row open without being seen.
    rows_->addLayout(line);
    line->addSpacing(0);
    line->addStrut(minimumRowHeight - 2 * rowInset);

    auto* const description = new QHBoxLayout;
    description->setSpacing(iconSpacing);
    if (!row.symbolName.empty()) {
        description->addWidget(new RowIcon(QString::fromStdString(row.symbolName), this), 0, Qt::AlignVCenter);
    }
    auto* const texts = new QVBoxLayout;
    texts->setSpacing(textSpacing);
    texts->addStretch(1);
    texts->addWidget(new TextLabel(QString::fromStdString(row.title), {}, this));
    texts->addWidget(new TextLabel(QString::fromStdString(row.detail),
                                   {.pixelSize = 11, .color = ColorRole::secondaryLabel, .maximumLines = 2}, this));
    texts->addStretch(1);
    description->addLayout(texts, 1);
    line->addLayout(description, 1);
    // Heard before the controls in it, whose own names do not tell the rows apart. A text is heard as it is.
    if (qobject_cast<QLabel*>(accessory) == nullptr && accessory->accessibleName().isEmpty()) {
        accessory->setAccessibleName(QString::fromStdString(row.title));
    }
    accessory->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
    line->addWidget(accessory, 0, Qt::AlignVCenter);
}

SettingsPage::SettingsPage(const PaneHeading& heading) {
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setWidgetResizable(true);
    setFocusPolicy(Qt::NoFocus);

    auto* const document = new QWidget;
    auto* const across = new QHBoxLayout(document);
    across->setContentsMargins(0, topMargin, 0, bottomMargin);
    auto* const stack = new QWidget(document);
    stack->setFixedWidth(stackWidth);
    across->addWidget(stack, 0, Qt::AlignHCenter);

    auto* const down = new QVBoxLayout(stack);
    down->setContentsMargins({});
    down->setSpacing(stackSpacing);
    down->addWidget(
        new TextLabel(QString::fromStdString(heading.title), {.pixelSize = 20, .weight = QFont::DemiBold}, stack));
    down->addWidget(new TextLabel(QString::fromStdString(heading.subtitle),
                                  {.pixelSize = 12, .color = ColorRole::secondaryLabel, .maximumLines = 0}, stack));
    stack_ = new QVBoxLayout;
    stack_->setSpacing(stackSpacing);
    down->addLayout(stack_);
    down->addStretch(1);

    setWidget(document);
    // The window's own background shows through.
    viewport()->setAutoFillBackground(false);
    document->setAutoFillBackground(false);
}

SettingsSection& SettingsPage::addSection(const QString& title) {
    auto* const section = new SettingsSection(title, widget());
    stack_->addWidget(section);
    return *section;
}

} // namespace brisk
