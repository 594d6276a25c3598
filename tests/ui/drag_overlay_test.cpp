#include "ui/drag_overlay.h"
#include "ui/theme.h"

#include <QApplication>
#include <QImage>
#include <QPaintEvent>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace brisk {
namespace {

constexpr CGSize display{.width = 800, .height = 600};

CustomWindowLayout custom(const char* name) {
    return {.id = name, .name = name, .isAvailableForDragging = true};
}

QImage rendered(WindowDragOverlayView& view) {
    view.resize(static_cast<int>(display.width), static_cast<int>(display.height));
    QImage image(view.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    view.render(&image, {}, {}, {});
    return image;
}

/// One colour laid on another, as a fraction of full opacity.
double laidOn(double above, double below) {
    return above + below * (1 - above);
}

/// How many pixels are as light as a label's text.
int inkIn(const QImage& image, const QRect& rectangle) {
    int count = 0;
    for (int x = rectangle.left(); x <= rectangle.right(); ++x) {
        for (int y = rectangle.top(); y <= rectangle.bottom(); ++y) {
            count += image.pixelColor(x, y).lightness() > 200 ? 1 : 0;
        }
    }
    return count;
}

class DragOverlayView : public testing::Test {
protected:
    DragOverlayView() {
        palette.setColor(QPalette::Highlight, QColor(200, 40, 120));
        view.setPalette(palette);
    }
    QImage draw(const std::vector<WindowDragZone>& zones, const std::optional<CommandIdentifier>& active = {}) {
        view.setZones(zonePictures(zones, active, {}), display);
        return rendered(view);
    }
    /// That pixel, y up as the zones have it, looks like `color` at that opacity.
    static void expectPixel(const QImage& image, int x, int y, const QColor& color, double alpha) {
        const QColor pixel = image.pixelColor(x, image.height() - 1 - y);
        EXPECT_NEAR(pixel.alphaF(), alpha, 0.012) << x << ", " << y;
        if (alpha > 0) {
            EXPECT_NEAR(pixel.red(), color.red(), 6) << x << ", " << y;
            EXPECT_NEAR(pixel.green(), color.green(), 6) << x << ", " << y;
            EXPECT_NEAR(pixel.blue(), color.blue(), 6) << x << ", " << y;
        }
    }

    QPalette palette;
    WindowDragOverlayView view;
    const QColor accent{200, 40, 120};
};

TEST_F(DragOverlayView, WithoutZonesEverythingIsTransparent) {
    const QImage image = draw({});
    QImage empty(image.size(), image.format());
    empty.fill(Qt::transparent);
    EXPECT_EQ(image, empty);
    EXPECT_NE(draw({{WindowLayout::maximize, {{0, 0}, display}}}), empty);
}

TEST_F(DragOverlayView, FillsAndOutlinesZonesByKindAndActivity) {
    const CGRect lower{{100, 50}, {300, 200}};
    const CGRect upper{{100, 350}, {300, 200}};
    const QColor teal = themeColor(ColorRole::teal, palette);
    const QImage image =
        draw({{WindowLayout::leftHalf, lower}, {custom("a"), upper}, {custom("b"), {{500, 50}, {100, 90}}}},
             "window.leftHalf");
    expectPixel(image, 120, 60, accent, 0.34);
    expectPixel(image, 120, 360, teal, 0.13);
    // The line lies across the edge: half of three pixels outside, half of one and a half.
    expectPixel(image, 99, 150, accent, 1);
    expectPixel(image, 97, 150, accent, 0);
    expectPixel(image, 99, 450, teal, 0.58 * 0.75);
    expectPixel(image, 100, 450, teal, laidOn(0.58 * 0.75, 0.13));
    // Corners are round: the rectangle's own corner is outside.
    expectPixel(image, 101, 51, accent, 0);
    expectPixel(image, 101, 351, teal, 0);
}

TEST_F(DragOverlayView, LabelsAreCentredAndOnlyTheActiveOneIsMarked) {
    const CGRect zone{{200, 200}, {400, 200}};
    const QFontMetricsF metrics(themeFont(13, QFont::DemiBold));
    const double textWidth = metrics.horizontalAdvance(QStringLiteral("Built-in · Center"));
    for (const bool isActive : {false, true}) {
        SCOPED_TRACE(isActive);
        const QImage image =
            draw({{WindowLayout::center, zone}}, isActive ? std::optional("window.center") : std::nullopt);
        const double fill = isActive ? 0.34 : 0.13;
        const double left = 400 - (textWidth + (isActive ? 21 : 0)) / 2 - 14;
        const double bottom = 300 - metrics.height() / 2 - 8;
        // Between the pill's edge and the text or marker nothing but the pill covers the fill.
        const QColor behind = image.pixelColor(static_cast<int>(left) + 7, 300);
        EXPECT_NEAR(behind.alphaF(), laidOn(0.48, fill), 0.012);
        expectPixel(image, static_cast<int>(left) - 2, 300, accent, fill);
        expectPixel(image, 400, static_cast<int>(bottom) - 2, accent, fill);
        EXPECT_NEAR(image.pixelColor(400, 599 - static_cast<int>(bottom) - 3).alphaF(), laidOn(0.48, fill), 0.012);

        const auto ink = [&](int from, int width) { return inkIn(image, {from, 293, width, 14}); };
        const int inside = static_cast<int>(left) + 14;
        EXPECT_GT(ink(inside + (isActive ? 21 : 0), static_cast<int>(textWidth)), 60);
        if (isActive) {
            EXPECT_GT(ink(inside, 14), 5);
            // The gap after the marker stays empty.
            const QColor gap = image.pixelColor(inside + 17, 300);
            EXPECT_NEAR(gap.alphaF(), laidOn(0.48, fill), 0.012);
        }
    }
}

TEST_F(DragOverlayView, ALabelWiderThanTheDisplayFillsIt) {
    const std::string name(200'000, 'm');
    const QImage image = draw({{custom(name.c_str()), {{200, 200}, {400, 200}}}});
    EXPECT_NEAR(image.pixelColor(2, 300 - 14).alphaF(), 0.48, 0.012);
    EXPECT_NEAR(image.pixelColor(797, 300 - 14).alphaF(), 0.48, 0.012);
}

TEST_F(DragOverlayView, ASmallerZoneIsPaintedOverTheActiveOne) {
    const QImage image = draw({{custom("inside"), {{50, 50}, {200, 150}}}, {WindowLayout::maximize, {{0, 0}, display}}},
                              "window.maximize");
    EXPECT_NEAR(image.pixelColor(70, 599 - 60).alphaF(), laidOn(0.13, 0.34), 0.012);
    const QColor line = image.pixelColor(49, 599 - 120);
    EXPECT_NEAR(line.alphaF(), laidOn(0.58 * 0.75, 0.34), 0.012) << "its outline lies on top";
}

TEST_F(DragOverlayView, WhatChangedLooksAsIfItHadBeenThereFromTheStart) {
    const std::vector<WindowDragZone> zones{{WindowLayout::maximize, {{0, 0}, display}},
                                            {WindowLayout::leftHalf, {{0, 0}, {400, 600}}},
                                            {WindowLayout::center, {{199.5, 150.25}, {400, 300}}},
                                            {custom("cell"), {{350, 100}, {266.7, 200}}}};
    view.resize(800, 600);
    view.show();
    draw(zones, "window.leftHalf");
    const QImage changed = draw(zones, "window.center");

    WindowDragOverlayView fresh;
    fresh.setPalette(palette);
    fresh.setZones(zonePictures(zones, "window.center", {}), display);
    EXPECT_EQ(changed, rendered(fresh));

    palette.setColor(QPalette::Highlight, QColor(0, 120, 215));
    view.setPalette(palette);
    fresh.setPalette(palette);
    EXPECT_NE(rendered(view), changed) << "the accent has changed";
    EXPECT_EQ(rendered(view), rendered(fresh));

    fresh.setZones(zonePictures(zones, "window.leftHalf", {}), display);
    EXPECT_EQ(draw(zones, "window.leftHalf"), rendered(fresh)) << "as it was shown before in another accent";
}

TEST_F(DragOverlayView, ZonesOfAnotherDisplayAreDrawnAnew) {
    const std::vector<WindowDragZone> zones{{WindowLayout::center, {{200, 200}, {400, 200}}}};
    const QImage image = draw(zones);
    view.setZones(zonePictures(zones, {}, {}), {.width = 800, .height = 500});
    EXPECT_NE(rendered(view), image);
    EXPECT_EQ(draw(zones), image);
}

TEST_F(DragOverlayView, CutOutDrawsOpaqueOutlinesAndPillsOnly) {
    view.setSurface(OverlaySurface::cutOut);
    const QImage image =
        draw({{WindowLayout::leftHalf, {{0, 0}, {400, 600}}}, {WindowLayout::center, {{450, 100}, {300, 200}}}},
             "window.leftHalf");
    QRegion region;
    for (const CGRect& rectangle : view.cutOut()) {
        region |= QRectF(rectangle.minX(), rectangle.minY(), rectangle.width(), rectangle.height()).toRect();
    }
    for (const QPoint at : {QPoint(0, 300), QPoint(5, 300), QPoint(451, 400), QPoint(200, 300), QPoint(600, 400)}) {
        EXPECT_TRUE(region.contains(at)) << at.x() << ", " << at.y();
        EXPECT_EQ(image.pixelColor(at).alpha(), 255) << at.x() << ", " << at.y();
    }
    for (const QPoint at : {QPoint(6, 200), QPoint(200, 100), QPoint(420, 300), QPoint(600, 320), QPoint(0, 0)}) {
        EXPECT_FALSE(region.contains(at)) << at.x() << ", " << at.y();
    }
    EXPECT_EQ(image.pixelColor(2, 300), accent);
    EXPECT_GT(inkIn(image, {160, 293, 80, 14}), 60);
}

/// Takes note of what is repainted.
class PaintRecorder final : public QObject {
public:
    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        if (event->type() == QEvent::Paint) {
            painted |= static_cast<QPaintEvent*>(event)->region();
        }
        return false;
    }
    QRegion painted;
};

class FakeNativeWindows : public NativeWindows {
public:
    MOCK_METHOD(void, setFrame, (NativeWindowID, const CGRect&), (override));
    MOCK_METHOD(void, orderFrontRegardless, (NativeWindowID), (override));
    MOCK_METHOD(void, setShape, (NativeWindowID, const std::optional<std::vector<CGRect>>&), (override));
    bool isCompositingActive() override { return compositing; }
    void setCompositingChangedHandler(std::function<void()> handler) override { changed = std::move(handler); }

    bool compositing = true;
    std::function<void()> changed;
};

class DragOverlayController : public testing::Test {
protected:
    static void settle() {
        for (int i = 0; i < 5; ++i) {
            QCoreApplication::processEvents();
        }
    }
    /// Records what is repainted from then on.
    void showLeftHalf(WindowDragOverlayController& overlay, PaintRecorder& recorder) {
        view()->resize(800, 600);
        overlay.show(zones, "window.leftHalf", screen);
        settle();
        view()->installEventFilter(&recorder);
    }
    static QWidget* view() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (dynamic_cast<WindowDragOverlayView*>(widget) != nullptr) {
                return widget;
            }
        }
        return nullptr;
    }

    testing::NiceMock<FakeNativeWindows> nativeWindows;
    const ScreenInfo screen{.frame = {{-800, 0}, display}, .visibleFrame = {{-800, 0}, display}};
    const std::vector<WindowDragZone> zones{{WindowLayout::leftHalf, {{-800, 0}, {200, 600}}},
                                            {WindowLayout::rightHalf, {{-300, 0}, {300, 600}}},
                                            {WindowLayout::center, {{-580, 200}, {200, 100}}}};
};

TEST_F(DragOverlayController, CoversTheDisplayInFrontOfAllAndNeedsNoCompositorToBeHarmless) {
    nativeWindows.compositing = false;
    WindowDragOverlayController overlay(nativeWindows);
    overlay.warmUp();
    EXPECT_FALSE(view()->isVisible());
    {
        const testing::InSequence order;
        EXPECT_CALL(nativeWindows, setFrame(testing::_, screen.frame));
        EXPECT_CALL(nativeWindows, setShape(testing::_, testing::Ne(std::nullopt))).WillOnce([] {
            EXPECT_FALSE(view()->isVisible()) << "shown before it was cut out, it hides the desktop";
        });
        EXPECT_CALL(nativeWindows, setFrame(testing::_, screen.frame)).WillOnce([] {
            EXPECT_TRUE(view()->isVisible()) << "what was asked before may have come too early";
        });
        EXPECT_CALL(nativeWindows, orderFrontRegardless(testing::_));
    }
    overlay.show(zones, "window.leftHalf", screen);
    EXPECT_TRUE(view()->isVisible());
    testing::Mock::VerifyAndClearExpectations(&nativeWindows);

    EXPECT_CALL(nativeWindows, setShape(testing::_, testing::Eq(std::nullopt)));
    nativeWindows.compositing = true;
    nativeWindows.changed();
    settle();
    testing::Mock::VerifyAndClearExpectations(&nativeWindows);

    overlay.hide();
    EXPECT_FALSE(view()->isVisible());
    EXPECT_CALL(nativeWindows, setShape).Times(0);
    nativeWindows.changed();
    settle();
}

TEST_F(DragOverlayController, RepaintsWhatChangedAndNothingWhenNothingDid) {
    WindowDragOverlayController overlay(nativeWindows);
    PaintRecorder recorder;
    showLeftHalf(overlay, recorder);

    EXPECT_CALL(nativeWindows, setShape).Times(0);
    EXPECT_CALL(nativeWindows, setFrame).Times(0);
    EXPECT_CALL(nativeWindows, orderFrontRegardless(testing::_)).Times(1);
    overlay.show(zones, "window.leftHalf", screen);
    settle();
    EXPECT_TRUE(recorder.painted.isEmpty());
    testing::Mock::VerifyAndClearExpectations(&nativeWindows);

    overlay.show(zones, "window.rightHalf", screen);
    settle();
    EXPECT_TRUE(recorder.painted.contains(QPoint(100, 100)));
    EXPECT_TRUE(recorder.painted.contains(QPoint(600, 100)));
    EXPECT_FALSE(recorder.painted.contains(QPoint(320, 350))) << "the zone between them looks as before";

    overlay.show({zones[0], zones[1]}, "window.rightHalf", screen);
    settle();
    EXPECT_TRUE(recorder.painted.contains(QPoint(320, 350))) << "it is shown no more";
}

TEST_F(DragOverlayController, RepaintsOnlyTheLinesOfWhatIsCutOut) {
    nativeWindows.compositing = false;
    WindowDragOverlayController overlay(nativeWindows);
    PaintRecorder recorder;
    showLeftHalf(overlay, recorder);
    overlay.show(zones, "window.rightHalf", screen);
    settle();
    EXPECT_FALSE(recorder.painted.contains(QPoint(100, 100))) << "nothing shows inside";
    // Whatever is drawn of the zones before and after has been painted anew.
    EXPECT_CALL(nativeWindows, setShape)
        .Times(2)
        .WillRepeatedly([&](NativeWindowID, const std::optional<std::vector<CGRect>>& shape) {
            ASSERT_TRUE(shape);
            for (const CGRect& rect : *shape) {
                const QRect pixels = QRectF(rect.minX(), rect.minY(), rect.width(), rect.height()).toRect();
                const bool isOfTheZoneBetween = QRect(215, 295, 210, 110).contains(pixels);
                EXPECT_TRUE(isOfTheZoneBetween || (QRegion(pixels) - recorder.painted).isEmpty())
                    << pixels.x() << ", " << pixels.y();
            }
        });
    overlay.show(zones, "window.leftHalf", screen);
    overlay.show(zones, "window.rightHalf", screen);
}

} // namespace
} // namespace brisk
