#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>
#include <QString>

namespace brisk {

/// The symbol of that name, `size` × `size` points drawn for a device pixel ratio, all in one colour. Null for an
/// unknown name.
QPixmap symbolPixmap(const QString& name, int size, const QColor& color, double devicePixelRatio);

/// The same as an icon, which is drawn anew for each size and device pixel ratio it is asked for; paler where it is
/// disabled. Null for an unknown name.
QIcon symbolIcon(const QString& name, const QColor& color);

} // namespace brisk
