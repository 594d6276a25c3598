#include "hotkeys/command_catalogue.h"

namespace brisk {

CommandIdentifier commandIdentifier(WindowLayout layout) {
    return "window." + std::string(rawValue(layout));
}

CommandIdentifier commandIdentifier(const CustomWindowLayout& layout) {
    return "window.custom." + layout.id;
}

} // namespace brisk
