#include "platform/freedesktop/TrayItemLabelComposer.h"

#include "FreedesktopTestSupport.h"

#include <gtest/gtest.h>

namespace trotlet::platform {
namespace {

QImage icon(int size) {
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(qRgba(200, 100, 0, 255));
    return image;
}

// Columns [from, to) that hold any visible pixel.
int inkColumns(const QImage& image, int from, int to) {
    int columns = 0;
    for (int x = from; x < to; ++x) {
        for (int y = 0; y < image.height(); ++y) {
            if (qAlpha(image.pixel(x, y)) > 0) {
                ++columns;
                break;
            }
        }
    }
    return columns;
}

TEST(TrayItemLabelComposer, ReservesTheGuideWidthSoReadingsDoNotJitter) {
    testing::ensureApplication();
    const TrayItemLabelStyle style{Qt::white, false, 3};
    for (int size : {16, 22, 24, 32, 44}) {
        const QFont font = TrayItemLabelComposer::font(size);
        // Digits share one cell width, so every two-digit reading is as wide as any other.
        EXPECT_EQ(TrayItemLabelComposer::textWidth(QStringLiteral("11%"), font),
                  TrayItemLabelComposer::textWidth(QStringLiteral("88%"), font))
            << size;
        const QImage a = TrayItemLabelComposer::compose(icon(size), QStringLiteral("7%"), QStringLiteral("100%"), style);
        const QImage b = TrayItemLabelComposer::compose(icon(size), QStringLiteral("100%"), QStringLiteral("100%"), style);
        EXPECT_EQ(a.size(), b.size()) << size;
        EXPECT_EQ(a.height(), size);
        EXPECT_EQ(a.width(), size + 3 + TrayItemLabelComposer::fieldWidth(QStringLiteral("7%"), QStringLiteral("100%"), font));
        // A text wider than its guide widens the field rather than being clipped.
        const QImage wide = TrayItemLabelComposer::compose(icon(size), QString::fromUtf8("\u2193888 KB/s"),
                                                           QStringLiteral("100%"), style);
        EXPECT_GT(wide.width(), a.width());
    }
}

TEST(TrayItemLabelComposer, DrawsTheTextBesideTheIconOnEitherSide) {
    testing::ensureApplication();
    const QImage base = icon(22);
    TrayItemLabelStyle after{Qt::white, false, 3};
    const QImage right = TrayItemLabelComposer::compose(base, QStringLiteral("37%"), QStringLiteral("100%"), after);
    // The icon is kept pixel for pixel; the gap stays clear; the field holds ink.
    EXPECT_EQ(right.pixel(0, 0), base.pixel(0, 0));
    EXPECT_EQ(right.pixel(21, 21), base.pixel(21, 21));
    EXPECT_EQ(inkColumns(right, 22, 25), 0);
    EXPECT_GT(inkColumns(right, 25, right.width()), 5);

    TrayItemLabelStyle before{Qt::white, true, 3};
    const QImage left = TrayItemLabelComposer::compose(base, QStringLiteral("37%"), QStringLiteral("100%"), before);
    EXPECT_EQ(left.size(), right.size());
    const int iconX = left.width() - 22;
    EXPECT_EQ(left.pixel(iconX, 0), base.pixel(0, 0));
    EXPECT_GT(inkColumns(left, 0, iconX - 3), 5);

    // Nothing to draw: the icon comes back as it was.
    EXPECT_EQ(TrayItemLabelComposer::compose(base, QString(), QString()), base);
}

}  // namespace
}  // namespace trotlet::platform
