#pragma once

#include <QUrl>

#include <string_view>

namespace brisk {

/// The address where it is one that a browser opens; else an empty one.
QUrl webAddress(std::string_view address);

} // namespace brisk
