#pragma once

#include "platform/pasteboard.h"

namespace brisk::simulated {

class Pasteboard final : public brisk::Pasteboard {
public:
    std::string contents;

    void setString(const std::string& text) override { contents = text; }
};

} // namespace brisk::simulated
