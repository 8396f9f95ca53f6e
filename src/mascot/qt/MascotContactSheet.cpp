#include "mascot/qt/MascotContactSheet.h"

#include <array>
#include <vector>

#include <QFont>
#include <QPainter>

#include "mascot/MascotCharacter.h"
#include "mascot/qt/MascotRenderer.h"
#include "shop/Catalog.h"

namespace trotlet::mascot {
namespace {

struct Backdrop {
    QColor fill, text, faint, rule;
};

Backdrop backdrop(bool dark) {
    if (dark)
        return {QColor(0x2B, 0x2B, 0x2E), QColor(0xEE, 0xEE, 0xF0), QColor(0x9A, 0x9A, 0xA2),
                QColor(0x44, 0x44, 0x48)};
    return {QColor(0xF4, 0xF4, 0xF6), QColor(0x1E, 0x1E, 0x22), QColor(0x70, 0x70, 0x78),
            QColor(0xDA, 0xDA, 0xDE)};
}

QFont labelFont(qreal pixels, bool bold = false) {
    QFont font;
    font.setPixelSize(qRound(pixels));
    font.setBold(bold);
    return font;
}

// One row of the sheet: a loop to show every frame of.
struct Row {
    QString label;
    MascotMood mood;
    int band = 0;
    std::uint64_t accessories = 0;
    bool blink = false;
};

std::vector<Row> loopRows(const MascotCharacter& c) {
    std::vector<Row> rows;
    const int bands = static_cast<int>(c.loadBands.size()) + 1;
    for (int b = 0; b < bands; ++b) {
        const double from = b == 0 ? 0.0 : c.loadBands[static_cast<size_t>(b - 1)];
        rows.push_back({QStringLiteral("run · band %1 (load %2+)").arg(b).arg(from, 0, 'f', 2),
                        MascotMood::running, b});
    }
    const int top = bands - 1;
    rows.push_back({QStringLiteral("panic"), MascotMood::panic, top});
    rows.push_back({QStringLiteral("overheated"), MascotMood::overheated, 0});
    rows.push_back({QStringLiteral("low battery"), MascotMood::lowBattery, 0});
    rows.push_back({QStringLiteral("offline + umbrella"), MascotMood::offline, 0,
                    MascotAccessories::umbrella});
    rows.push_back({QStringLiteral("sit"), MascotMood::sitting});
    rows.push_back({QStringLiteral("sleep"), MascotMood::sleeping});
    rows.push_back({QStringLiteral("celebrate"), MascotMood::celebrating});
    rows.push_back({QStringLiteral("blink (run, sit)"), MascotMood::running, 0, 0, true});
    return rows;
}

struct Accessory {
    const char* label;
    std::uint64_t bit;
    MascotMood mood;
};

constexpr std::array<Accessory, 11> accessoryColumns = {{
    {"charging", MascotAccessories::charging, MascotMood::running},
    {"backpack", MascotAccessories::backpack, MascotMood::running},
    {"nightcap", MascotAccessories::nightcap, MascotMood::sleeping},
    {"sweat", MascotAccessories::sweat, MascotMood::running},
    {"umbrella", MascotAccessories::umbrella, MascotMood::offline},
    {"halloween", MascotAccessories::halloweenHat, MascotMood::running},
    {"holiday", MascotAccessories::holidayHat, MascotMood::sitting},
    {"gpu", MascotAccessories::gpuBadge, MascotMood::running},
    {"memory", MascotAccessories::memoryBadge, MascotMood::running},
    {"network", MascotAccessories::networkBadge, MascotMood::running},
    {"all",
     MascotAccessories::charging | MascotAccessories::backpack | MascotAccessories::sweat |
         MascotAccessories::holidayHat | MascotAccessories::gpuBadge,
     MascotMood::running},
}};

QImage frameOf(const MascotCharacter& c, MascotMood mood, int band, int frame,
               std::uint64_t accessories, int size, qreal scale, bool blink = false) {
    return drawMascotFrame(c, mood, band, frame, MascotAccessories{accessories}, size, scale,
                           blink);
}

QString titleFor(const std::string& id) {
    const auto* item = shop::Catalog::item(id);
    const QString name = item ? QString::fromStdString(item->displayName()) : QStringLiteral("?");
    return name + QStringLiteral("  ·  ") + QString::fromStdString(id);
}

constexpr int margin = 12, labelWidth = 150, gap = 6;

// Draws the rows of loops at one size from `top`; returns the y below them.
int drawLoopRows(QPainter& p, const MascotCharacter& c, int size, qreal scale, int top,
                 const Backdrop& b) {
    p.setPen(b.faint);
    p.setFont(labelFont(11, true));
    p.drawText(QPointF(margin, top + 11), size < 32 ? QStringLiteral("Menu bar · %1 px").arg(size)
                                                    : QStringLiteral("Panel · %1 pt").arg(size));
    int y = top + 18;
    for (const Row& row : loopRows(c)) {
        p.setPen(b.text);
        p.setFont(labelFont(11));
        p.drawText(QRectF(margin, y, labelWidth, size), Qt::AlignVCenter | Qt::AlignLeft,
                   row.label);
        const int n = c.frameCount(row.mood);
        int x = margin + labelWidth;
        for (int i = 0; i < n; ++i, x += size + gap)
            p.drawImage(QPointF(x, y),
                        frameOf(c, row.mood, row.band, i, row.accessories, size, scale, row.blink));
        if (row.blink) {
            x += gap * 2;
            for (int i = 0; i < c.frameCount(MascotMood::sitting); ++i, x += size + gap)
                p.drawImage(QPointF(x, y),
                            frameOf(c, MascotMood::sitting, 0, i, 0, size, scale, true));
        }
        y += size + gap;
    }
    return y;
}

}  // namespace

QImage renderMascotContactSheet(const std::string& mascotId, bool dark, qreal scale) {
    const MascotCharacter& c = characterFor(mascotId);
    const Backdrop b = backdrop(dark);
    const int rows = static_cast<int>(loopRows(c).size());
    const int maxFrames =
        std::max({c.frameCount(MascotMood::running) + c.frameCount(MascotMood::sitting) + 1,
                  c.frameCount(MascotMood::celebrating), c.frameCount(MascotMood::sleeping)});
    const int width = std::max(margin * 2 + labelWidth + maxFrames * (44 + gap),
                               margin * 2 + static_cast<int>(accessoryColumns.size()) * (44 + gap));
    const int height = 40 + (18 + rows * (22 + gap)) + 10 + (18 + rows * (44 + gap)) + 10 +
                       (18 + 22 + gap + 44 + 16) + 10 + (18 + 24 + 16) + margin;
    QImage sheet(qRound(width * scale), qRound(height * scale),
                 QImage::Format_ARGB32_Premultiplied);
    sheet.setDevicePixelRatio(scale);
    sheet.fill(b.fill);
    QPainter p(&sheet);
    p.setRenderHint(QPainter::Antialiasing);
    p.setRenderHint(QPainter::SmoothPixmapTransform);

    p.setPen(b.text);
    p.setFont(labelFont(15, true));
    p.drawText(QPointF(margin, 24), titleFor(c.id));

    int y = drawLoopRows(p, c, 22, scale, 36, b) + 10;
    y = drawLoopRows(p, c, 44, scale, y, b) + 10;

    // Accessories: each alone on a pose that wears it well, at both sizes.
    p.setPen(b.faint);
    p.setFont(labelFont(11, true));
    p.drawText(QPointF(margin, y + 11), QStringLiteral("Accessories"));
    y += 18;
    int x = margin;
    for (const Accessory& a : accessoryColumns) {
        const int band = 0, frame = 2;
        p.drawImage(QPointF(x + 11, y), frameOf(c, a.mood, band, frame, a.bit, 22, scale));
        p.drawImage(QPointF(x, y + 22 + gap), frameOf(c, a.mood, band, frame, a.bit, 44, scale));
        p.setPen(b.text);
        p.setFont(labelFont(9));
        p.drawText(QRectF(x - 2, y + 22 + gap + 44, 44 + 4, 14), Qt::AlignCenter,
                   QString::fromLatin1(a.label));
        x += 44 + gap;
    }
    y += 22 + gap + 44 + 16 + 10;

    // The menu bar's sizes side by side: the silhouette must hold at every one.
    p.setPen(b.faint);
    p.setFont(labelFont(11, true));
    p.drawText(QPointF(margin, y + 11), QStringLiteral("Menu-bar sizes 16 · 18 · 20 · 22 · 24 px"));
    y += 18;
    x = margin;
    for (int size : {16, 18, 20, 22, 24}) {
        for (MascotMood mood : {MascotMood::running, MascotMood::sitting, MascotMood::sleeping}) {
            p.drawImage(QPointF(x, y + 24 - size), frameOf(c, mood, 0, 1, 0, size, scale));
            x += size + 3;
        }
        x += 12;
    }
    p.end();
    return sheet;
}

}  // namespace trotlet::mascot
