#pragma once

#include "ui/theme.h"

#include <QLabel>

namespace brisk {

/// How a text of ours looks. The colour is a role, taken from the palette on every paint.
struct TextLook {
    int pixelSize = 13;
    QFont::Weight weight = QFont::Normal;
    ColorRole color = ColorRole::label;
    /// What does not fit into them is elided, the full text then in the tool tip. Any number when 0.
    int maximumLines = 1;
    /// Whether the text gives way where space is short, down to a few characters, or keeps its natural width.
    bool isCompressible = true;
    Qt::Alignment alignment = Qt::AlignLeading;
    bool isItalic = false;
    /// Instead of the role's own, 0...1.
    std::optional<double> alpha = std::nullopt;
};

/// A text that is shown, to the letter. The toolkit's label elides nothing and wraps into any number of lines.
class TextLabel final : public QLabel {
    Q_OBJECT

public:
    TextLabel(const QString& text, const TextLook& look, QWidget* parent = nullptr);

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override;
    int heightForWidth(int width) const override;

protected:
    bool event(QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// The lines as they are shown in that width, and whether something had to be left out.
    struct Lines {
        QStringList texts;
        bool isElided = false;
    };
    const Lines& linesIn(int width) const;
    Lines brokenInto(int width) const;
    int heightOf(qsizetype lineCount) const;
    void forgetOtherText() const;

    TextLook look_;
    // Laying out asks for these over and over, and shaping text is what a long page's time goes into.
    mutable QString laidOutText_;
    mutable QSize naturalSize_;
    mutable int linesWidth_ = -1;
    mutable Lines lines_;
};

} // namespace brisk
