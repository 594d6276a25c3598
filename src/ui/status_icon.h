#pragma once

#include <QIcon>
#include <QPalette>

namespace brisk {

/// The face for a panel whose colour nobody tells: in the tone that the palette suggests, with a rim in the opposite
/// one, so that it stands out from a light and a dark panel alike. Drawn for each size it is asked for.
QIcon statusIcon(const QPalette& palette);

} // namespace brisk
