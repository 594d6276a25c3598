#pragma once

#include "platform/pasteboard.h"

#include <QClipboard>
#include <QGuiApplication>

namespace brisk::qt {

/// The desktop's clipboard.
class Pasteboard final : public brisk::Pasteboard {
public:
    void setString(const std::string& text) override {
        QGuiApplication::clipboard()->setText(QString::fromStdString(text));
    }
};

} // namespace brisk::qt
