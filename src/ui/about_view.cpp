#include "ui/about_view.h"

#include "ui/about_button.h"
#include "ui/application_icon.h"
#include "ui/text_label.h"
#include "ui/web_address.h"

#include <QHBoxLayout>
#include <QPainter>
#include <QVBoxLayout>

namespace brisk {

namespace {

constexpr int iconSize = 132;
constexpr int verticalMargin = 24;
constexpr int horizontalMargin = 56;
constexpr int buttonSpacing = 12;
constexpr QSize websiteButtonSize{104, 34};
constexpr QSize acknowledgementsButtonSize{176, 34};

class ApplicationIconView final : public QLabel {
public:
    explicit ApplicationIconView(QWidget* parent) : QLabel(parent) {
        setFixedSize(iconSize, iconSize);
        setAccessibleName(QString::fromLatin1(applicationIconDescription));
    }

protected:
    void paintEvent(QPaintEvent*) override {
        QPainter painter(this);
        applicationIcon(themeColor(ColorRole::label, palette())).paint(&painter, rect());
    }
};

TextLook centered(int pixelSize, ColorRole color) {
    return {.pixelSize = pixelSize, .color = color, .alignment = Qt::AlignHCenter};
}

} // namespace

BriskAboutView::BriskAboutView(const Texts& texts, const Actions& actions, QWidget* parent) : QWidget(parent) {
    auto* const stack = new QVBoxLayout(this);
    stack->setContentsMargins(horizontalMargin, verticalMargin, horizontalMargin, verticalMargin);
    stack->setSpacing(0);
    stack->addStretch(1);
    const auto add = [&](QWidget* item, int spaceAfter) {
        stack->addWidget(item, 0, Qt::AlignHCenter);
        stack->addSpacing(spaceAfter);
    };
    const auto addText = [&](const QString& text, const TextLook& look, int spaceAfter) {
        add(new TextLabel(text, look, this), spaceAfter);
    };

    add(new ApplicationIconView(this), 24);
    addText(QStringLiteral("brisk"), centered(42, ColorRole::label), 6);
    addText(QString::fromStdString(texts.version), centered(15, ColorRole::secondaryLabel), 20);
    TextLook tagline = centered(17, ColorRole::label);
    tagline.maximumLines = 2;
    tagline.isItalic = true;
    tagline.alpha = 0.84;
    addText(QStringLiteral("Reluctantly putting windows\nin their place since 2026."), tagline, 22);

    auto* const buttons = new QWidget(this);
    auto* const row = new QHBoxLayout(buttons);
    row->setContentsMargins({});
    row->setSpacing(buttonSpacing);
    auto* const website = new AboutButton(QStringLiteral("Website"), websiteButtonSize, buttons);
    website->setObjectName("website");
    const QUrl url = webAddress(texts.websiteAddress);
    website->setEnabled(!url.isEmpty());
    website->setToolTip(url.isEmpty() ? QStringLiteral("This build names no website.") : url.toDisplayString());
    connect(website, &QPushButton::clicked, this,
            [open = actions.openWebsite, url] { open(url.toString(QUrl::FullyEncoded).toStdString()); });
    auto* const acknowledgements =
        new AboutButton(QStringLiteral("Acknowledgements"), acknowledgementsButtonSize, buttons);
    acknowledgements->setObjectName("acknowledgements");
    connect(acknowledgements, &QPushButton::clicked, this, actions.showAcknowledgements);
    row->addWidget(website);
    row->addWidget(acknowledgements);
    add(buttons, 22);

    addText(QString::fromStdString(texts.makerLine), centered(13, ColorRole::tertiaryLabel), 6);
    addText(QStringLiteral("No accounts. No telemetry. Just windows."), centered(13, ColorRole::tertiaryLabel), 0);
    stack->addStretch(1);
}

} // namespace brisk
