#include "snapshot/ScenePainting.h"

#include <QGuiApplication>
#include <QPainter>
#include <QPainterPath>

#include "mascot/MascotCharacter.h"
#include "mascot/qt/MascotRenderer.h"
#include "ui/panel/PanelModel.h"
#include "ui/theme/Theme.h"

namespace trotlet::snapshot {
namespace {

constexpr int menuBarHeight = 28;
constexpr int mascotPixels = 22;

qreal scale() { return qGuiApp ? qGuiApp->devicePixelRatio() : 2; }

QImage canvas(int width, int height) {
    const qreal s = scale();
    QImage image(int(width * s), int(height * s), QImage::Format_ARGB32_Premultiplied);
    image.setDevicePixelRatio(s);
    image.fill(Qt::transparent);
    return image;
}

struct BarColors {
    QColor bar;
    QColor text;
    QColor label;
};

BarColors barColors(panel::ColorScheme scheme) {
    if (scheme == panel::ColorScheme::dark)
        return {QColor(0x24, 0x24, 0x28), QColor(0xF1, 0xF1, 0xF4), QColor(0xA8, 0xA9, 0xB2)};
    return {QColor(0xEC, 0xEC, 0xEF), QColor(0x1D, 0x1D, 0x21), QColor(0x5F, 0x60, 0x68)};
}

// One tray item: the mascot and its reading, from `left`; returns the item's right edge.
qreal drawTrayItem(QPainter& p, const QImage& frame, qreal left, qreal top, const QString& reading,
                   const QColor& color) {
    p.drawImage(
        QRectF(left, top + (menuBarHeight - mascotPixels) / 2.0, mascotPixels, mascotPixels),
        frame);
    QFont font = QGuiApplication::font();
    font.setPointSizeF(font.pointSizeF() * 0.95);
    font.setWeight(QFont::Medium);
    p.setFont(font);
    p.setPen(color);
    const qreal x = left + mascotPixels + 4;
    const qreal w = QFontMetricsF(font).horizontalAdvance(reading);
    p.drawText(QRectF(x, top, w + 2, menuBarHeight), Qt::AlignVCenter | Qt::AlignLeft, reading);
    return x + w;
}

}  // namespace

panel::WeatherSummary sceneWeather() {
    panel::WeatherSummary w;
    w.place = "Berlin";
    w.temperatureC = 14;
    w.condition = "Partly cloudy";
    w.symbol = "cloud.sun.fill";
    w.highC = 17;
    w.lowC = 9;
    w.ageSeconds = 600;
    return w;
}

QImage paintMenuBarStrip(const std::string& mascotId, panel::ColorScheme scheme) {
    const auto& character = mascot::characterFor(mascotId);
    const BarColors colors = barColors(scheme);
    mascot::MascotRenderer renderer;
    struct Cell {
        mascot::MascotMood mood;
        int band;
        int frame;
        QString reading;
        QString label;
    };
    std::vector<Cell> cells;
    static const char* bandNames[] = {"trot", "run", "gallop", "sprint", "zoomies"};
    static const char* readings[] = {"12%", "38%", "64%", "85%", "99%"};
    const int bands = int(character.loadBands.size()) + 1;
    for (int band = 0; band < bands && band < 5; ++band)
        for (int frame = 0; frame < 3; ++frame)
            cells.push_back({mascot::MascotMood::running, band,
                             frame * std::max(1, character.runFrames / 3), readings[band],
                             frame == 0 ? bandNames[band] : ""});
    cells.push_back({mascot::MascotMood::sitting, 0, 0, "4%", "sit"});
    cells.push_back({mascot::MascotMood::sleeping, 0, 0, "1%", "sleep"});

    const qreal cellWidth = 66;
    const int width = int(cellWidth * qreal(cells.size())) + 16;
    const int height = menuBarHeight + 18;
    QImage image = canvas(width, height);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.fillRect(QRectF(0, 0, width, height),
               colors.bar.darker(scheme == panel::ColorScheme::dark ? 115 : 103));
    p.fillRect(QRectF(0, 0, width, menuBarHeight), colors.bar);
    qreal x = 8;
    QFont small = QGuiApplication::font();
    small.setPointSizeF(small.pointSizeF() * 0.8);
    for (const auto& cell : cells) {
        mascot::MascotState state;
        state.mood = cell.mood;
        state.loadBand = std::uint8_t(cell.band);
        const QImage frame = renderer.frame(character, state, cell.frame, mascotPixels, scale());
        drawTrayItem(p, frame, x, 0, cell.reading, colors.text);
        if (!cell.label.isEmpty()) {
            p.setFont(small);
            p.setPen(colors.label);
            p.drawText(QRectF(x, menuBarHeight, cellWidth * 3, 18),
                       Qt::AlignLeft | Qt::AlignVCenter, cell.label);
        }
        x += cellWidth;
    }
    return image;
}

QImage paintHero(const QImage& panel, const ui::PanelModel& model, panel::ColorScheme scheme) {
    const qreal s = panel.devicePixelRatio();
    const QSizeF panelSize(panel.width() / s, panel.height() / s);
    const int width = 760;
    const int height = int(menuBarHeight + 8 + panelSize.height() + 40);
    QImage image = canvas(width, height);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    const bool dark = scheme == panel::ColorScheme::dark;

    // A quiet wallpaper, then the bar.
    QLinearGradient wall(0, 0, width, height);
    wall.setColorAt(0, dark ? QColor(0x1D, 0x24, 0x3A) : QColor(0x9C, 0xC3, 0xF0));
    wall.setColorAt(1, dark ? QColor(0x3A, 0x25, 0x48) : QColor(0xF4, 0xC6, 0xD8));
    p.fillRect(image.rect(), wall);
    const BarColors colors = barColors(scheme);
    p.fillRect(QRectF(0, 0, width, menuBarHeight), colors.bar);
    QFont font = QGuiApplication::font();
    font.setWeight(QFont::DemiBold);
    p.setFont(font);
    p.setPen(colors.text);
    p.drawText(QRectF(14, 0, 200, menuBarHeight), Qt::AlignVCenter | Qt::AlignLeft,
               QStringLiteral("Activities"));
    font.setWeight(QFont::Normal);
    p.setFont(font);
    p.drawText(QRectF(0, 0, width, menuBarHeight), Qt::AlignCenter,
               QStringLiteral("Thu 1 Oct  14:30"));

    // The tray item with the highlight of an open panel.
    mascot::MascotRenderer renderer;
    const QImage frame = renderer.frame(mascot::characterFor(model.mascotId()),
                                        model.mascotVisual(), 0, mascotPixels, s);
    const qreal itemLeft = width - 150;
    p.setPen(Qt::NoPen);
    p.setBrush(dark ? QColor(255, 255, 255, 36) : QColor(0, 0, 0, 26));
    p.drawRoundedRect(QRectF(itemLeft - 6, 3, 72, menuBarHeight - 6), 6, 6);
    const qreal itemRight = drawTrayItem(p, frame, itemLeft, 0, QStringLiteral("23%"), colors.text);

    // The panel, centred under the item, with a soft shadow.
    const qreal centre = (itemLeft + itemRight) / 2;
    const QRectF frameRect(std::min(centre - panelSize.width() / 2, width - panelSize.width() - 8),
                           menuBarHeight + 6, panelSize.width(), panelSize.height());
    for (int i = 8; i >= 1; --i) {
        p.setPen(Qt::NoPen);
        p.setBrush(QColor(0, 0, 0, 10));
        p.drawRoundedRect(frameRect.adjusted(-i, -i / 2.0, i, i * 1.2), 10 + i, 10 + i);
    }
    p.drawImage(frameRect, panel);
    return image;
}

}  // namespace trotlet::snapshot
