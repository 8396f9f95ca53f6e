#include <gtest/gtest.h>

#include <QImage>
#include <QLinearGradient>
#include <QPainter>
#include <QPainterPath>
#include <QRadialGradient>

#include <algorithm>
#include <functional>

#include "ui/tests/UiTestApp.h"
#include "ui/theme/Gradients.h"

namespace trotlet::ui {
namespace {

QImage paint(const std::function<void(QPainter&)>& draw) {
    QImage image(QSize(120, 90) * 2, QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(2);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.setPen(Qt::NoPen);
    draw(p);
    return image;
}

int largestDifference(const QImage& a, const QImage& b) {
    int worst = 0;
    for (int y = 0; y < a.height(); ++y)
        for (int x = 0; x < a.width(); ++x) {
            const QRgb p = a.pixel(x, y), q = b.pixel(x, y);
            worst = std::max({worst, std::abs(qRed(p) - qRed(q)), std::abs(qGreen(p) - qGreen(q)),
                              std::abs(qBlue(p) - qBlue(q)), std::abs(qAlpha(p) - qAlpha(q))});
        }
    return worst;
}

const QGradientStops skyStops{{0, QColor(40, 90, 200)}, {0.5, QColor(120, 170, 240, 200)},
                              {1, QColor(250, 200, 150, 40)}};
const QGradientStops glowStops{{0, QColor(255, 220, 120, 160)}, {1, QColor(255, 220, 120, 0)}};

TEST(Gradients, PaintWhatQtGradientsPaint) {
    application();
    const QRectF span(6, 10, 100, 70);
    QLinearGradient linear(span.topLeft(), span.bottomLeft());
    linear.setStops(skyStops);
    QPainterPath cloud;
    cloud.addEllipse(span.adjusted(10, 0, -10, 0));
    const QRectF box(20, 15, 80, 50);
    QRadialGradient radial(box.center(), box.width() / 2);
    radial.setStops(glowStops);
    struct Case {
        const char* name;
        std::function<void(QPainter&)> ours, qts;
    } cases[] = {
        {"a rectangle", [&](QPainter& p) { p.fillRect(span, verticalGradient(span, skyStops)); },
         [&](QPainter& p) { p.fillRect(span, linear); }},
        {"a path at half opacity, its edges touching the span",
         [&](QPainter& p) {
             p.setOpacity(0.5);
             p.fillPath(cloud, verticalGradient(span, skyStops));
         },
         [&](QPainter& p) {
             p.setOpacity(0.5);
             p.fillPath(cloud, linear);
         }},
        {"a round glow",
         [&](QPainter& p) {
             const QRectF square(box.center() - QPointF(40, 40), QSizeF(80, 80));
             p.setBrush(radialGradient(p, square, glowStops));
             p.drawEllipse(square);
         },
         [&](QPainter& p) {
             p.setBrush(radial);
             p.drawEllipse(box.center(), 40, 40);
         }},
    };
    for (const auto& c : cases)
        EXPECT_LE(largestDifference(paint(c.ours), paint(c.qts)), 3) << c.name;
}

TEST(Gradients, JustPastTheSpanTheEndColoursHold) {
    application();
    const QRectF span(0, 20, 120, 50);
    const QImage image = paint([&](QPainter& p) {
        p.fillRect(span.adjusted(0, -2, 0, 2), verticalGradient(span, skyStops));
    });
    auto near = [](QColor seen, QColor stop) {
        return std::abs(seen.red() - stop.red()) <= 2 && std::abs(seen.alpha() - stop.alpha()) <= 2;
    };
    // Device rows 36 and 141 lie a pixel or two outside the span, above and below it.
    EXPECT_TRUE(near(image.pixelColor(10, 36), skyStops.front().second));
    EXPECT_TRUE(near(image.pixelColor(10, 141), skyStops.back().second));
    // A flat span or box gets a plain brush, not an image squeezed to nothing.
    EXPECT_EQ(verticalGradient(QRectF(0, 5, 10, 0), skyStops).style(), Qt::SolidPattern);
    EXPECT_EQ(radialGradient(QPainter(), QRectF(), glowStops).style(), Qt::NoBrush);
}

}  // namespace
}  // namespace trotlet::ui
