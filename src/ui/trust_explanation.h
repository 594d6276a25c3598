#pragma once

#include "ui/message_box.h"

#include <memory>

namespace brisk {

/// Says why Brisk cannot manage windows on this desktop, and what to do about it. Does not wait for the user.
class TrustExplanation {
public:
    /// Brings the explanation to the front when it is still open.
    void show();

private:
    std::unique_ptr<MessageBox> box_;
};

} // namespace brisk
