#pragma once

#include <QIcon>
#include <QString>
#include <QStringList>

namespace brisk {

inline constexpr const char* applicationIconDescription = "Brisk";

/// The files of the program's own icon, one a size: what the "AppIcon" resource of a bundle is elsewhere.
QStringList applicationIconResource();

/// The first of: the images of `bundleResource` that exist and load; the icon that the application has been given for
/// its windows; the flame symbol in `symbolColor`; an empty icon.
QIcon applicationIcon(const QColor& symbolColor, const QStringList& bundleResource = applicationIconResource());

} // namespace brisk
