#pragma once

#include "tour/brisk.h"

namespace brisk::tour {

/// The settings that all scenes but the guide play with: a gap, drag targets, and two layouts of the user's own on
/// Ctrl+Alt+1 and 2.
inline constexpr const char* settings = R"({
  "commandHotkeys": {
    "window.custom.wide": { "display": "⌃⌥1", "keyCode": 18, "modifiers": 6144 },
    "window.custom.reading": { "display": "⌃⌥2", "keyCode": 19, "modifiers": 6144 }
  },
  "customWindowLayouts": [
    { "id": "wide", "name": "Wide Left", "isAvailableForDragging": false,
      "selection": { "columns": 4, "rows": 2, "column": 0, "row": 0, "columnSpan": 3, "rowSpan": 2 } },
    { "id": "reading", "name": "Reading", "isAvailableForDragging": true,
      "selection": { "columns": 4, "rows": 4, "column": 1, "row": 1, "columnSpan": 2, "rowSpan": 2 } }
  ],
  "dragEnabledBuiltInWindowLayoutIDs": ["window.bottomRight", "window.leftHalf", "window.topRight"],
  "hasCompletedOnboarding": true,
  "windowGap": 10
})";

/// The first start: the guide's three steps, with the permission coming while the second is shown.
void playGuide(Stage& stage, Brisk& brisk);
/// Every command by its shortcut on every actor.
void playCommands(Stage& stage);
/// A command chosen in the tray's menu.
void playMenu(Stage& stage, Brisk& brisk);
/// A window dragged onto a zone with Shift held.
void playDrag(Stage& stage, Brisk& brisk);
/// The panes of the settings window, and a recorder that refuses a shortcut. Leaves the Windows pane open.
void playSettings(Stage& stage, Brisk& brisk);
/// From the Windows pane: a layout of the user's own, drawn on the grid.
void playEditor(Stage& stage, Brisk& brisk);

} // namespace brisk::tour
