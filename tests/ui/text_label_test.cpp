#include "ui/text_label.h"

#include <QImage>

#include <gtest/gtest.h>

namespace brisk {
namespace {

TEST(TextLabel, ShowsTheTextItWasGivenLast) {
    TextLabel label({}, {.maximumLines = 2});
    label.resize(300, 40);
    const QImage empty = label.grab().toImage();
    const int emptyWidth = label.sizeHint().width();
    label.setText(QStringLiteral("Waiting for permission"));
    EXPECT_GT(label.sizeHint().width(), emptyWidth);
    const QImage first = label.grab().toImage();
    EXPECT_NE(first, empty);
    label.setText(QStringLiteral("Permission granted."));
    EXPECT_NE(label.grab().toImage(), first);
}

} // namespace
} // namespace brisk
