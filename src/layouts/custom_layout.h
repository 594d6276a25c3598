#pragma once

#include "layouts/grid_selection.h"

#include <string>

namespace brisk {

/// A layout of the user's own: a named block of grid cells. Lists of them are looked up by `id`, which never changes
/// once the layout exists; the other fields are edited.
struct CustomWindowLayout {
    /// A UUID in its canonical text form for layouts made here; any string read from a settings file is kept.
    std::string id;
    std::string name;
    WindowGridSelection selection;
    /// Whether it is offered as a drop zone while a window is dragged with Shift.
    bool isAvailableForDragging = false;

    friend bool operator==(const CustomWindowLayout&, const CustomWindowLayout&) = default;
};

} // namespace brisk
