#pragma once

#include <QColor>
#include <QFont>
#include <QPalette>

namespace brisk {

/// What a colour is for. Standard controls take theirs from the style; these are for what is drawn here.
enum class ColorRole {
    label,
    secondaryLabel,
    tertiaryLabel,
    separator,
    windowBackground,
    controlBackground,
    unemphasizedSelection,
    accent,
    link,
    green,
    orange,
    red,
    teal,
};

/// Whether the palette is a dark one. The palette decides, not a setting: it is what the controls beside us follow.
bool isDark(const QPalette& palette);

/// The role's colour under that palette, also for a window that is not active. Ask again on every paint and on
/// QEvent::PaletteChange, nothing here is remembered.
QColor themeColor(ColorRole role, const QPalette& palette);

/// The colour, made darker or lighter as far as it must be for text in it to have a contrast of 4.5 to 1 with
/// `background` (WCAG 2.1, 1.4.3). Both opaque.
QColor readableOn(const QColor& background, QColor color);

/// Room on either side of a button's title: some styles let it touch the edges.
inline constexpr int buttonTitleMargin = 12;

/// The desktop's interface font in `pixelSize` pixels at scale 1.
QFont themeFont(int pixelSize, QFont::Weight weight = QFont::Normal);

} // namespace brisk
