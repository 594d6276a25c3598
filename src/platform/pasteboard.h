#pragma once

#include <string>

namespace brisk {

/// What the user copies to and pastes from. Main thread only.
class Pasteboard {
public:
    virtual ~Pasteboard() = default;
    /// Replaces everything on it by plain text (UTF-8).
    virtual void setString(const std::string& text) = 0;
};

} // namespace brisk
