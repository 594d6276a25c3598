#include "ui/theme.h"

#include <gtest/gtest.h>

namespace brisk {
namespace {

TEST(Theme, TextStandsOutFromItsBackground) {
    // The two greys on either side of the limit on white, as the guidelines' own examples have them.
    EXPECT_EQ(readableOn(Qt::white, QColor(0x76, 0x76, 0x76)), QColor(0x76, 0x76, 0x76));
    EXPECT_LT(readableOn(Qt::white, QColor(0x77, 0x77, 0x77)).lightness(), 0x76);

    const QColor red(0xFF, 0x3B, 0x30);
    EXPECT_LT(readableOn(Qt::white, red).lightness(), red.lightness());
    EXPECT_GT(readableOn(QColor(0x3C, 0x3C, 0x40), red).lightness(), red.lightness());
    EXPECT_EQ(readableOn(QColor(0x3C, 0x3C, 0x40), red).hslHue() / 15, red.hslHue() / 15) << "and stays red";
    EXPECT_LT(readableOn(QColor(0x80, 0x80, 0x80), QColor(0x80, 0x80, 0x80)).lightness(), 0x20);
}

} // namespace
} // namespace brisk
