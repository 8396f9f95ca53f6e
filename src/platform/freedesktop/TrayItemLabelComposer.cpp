#include "platform/freedesktop/TrayItemLabelComposer.h"

#include <QFontDatabase>
#include <QFontMetrics>
#include <QGuiApplication>
#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <cmath>

namespace trotlet::platform {

namespace {

int digitCellWidth(const QFontMetrics& metrics) {
    int widest = 0;
    for (char16_t digit = u'0'; digit <= u'9'; ++digit) {
        widest = std::max(widest, metrics.horizontalAdvance(QChar(digit)));
    }
    return widest;
}

}  // namespace

QFont TrayItemLabelComposer::font(int pixelHeight) {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    // About 60 % of the tray height gives 13 px text in a 22 px tray, the size panels use for
    // their own clocks.
    font.setPixelSize(std::max(8, int(std::lround(pixelHeight * 0.6))));
    font.setWeight(QFont::Medium);
    font.setHintingPreference(QFont::PreferFullHinting);
    font.setStyleStrategy(QFont::PreferAntialias);
    return font;
}

int TrayItemLabelComposer::textWidth(const QString& text, const QFont& font) {
    const QFontMetrics metrics(font);
    const int cell = digitCellWidth(metrics);
    int width = 0;
    for (const QChar c : text) {
        width += c.isDigit() ? cell : metrics.horizontalAdvance(c);
    }
    return width;
}

int TrayItemLabelComposer::fieldWidth(const QString& text, const QString& guide, const QFont& font) {
    return std::max({0, textWidth(text, font), textWidth(guide, font)});
}

QImage TrayItemLabelComposer::compose(const QImage& icon, const QString& text, const QString& guide,
                                      const TrayItemLabelStyle& style) {
    if (icon.isNull() || (text.isEmpty() && guide.isEmpty())) return icon;
    const int height = icon.height();
    const QFont textFont = font(height);
    const int field = fieldWidth(text, guide, textFont);
    const int gap = std::max(0, style.gap);

    QImage out(icon.width() + gap + field, height, QImage::Format_ARGB32_Premultiplied);
    out.fill(Qt::transparent);
    QPainter painter(&out);
    const int iconX = style.textBeforeIcon ? field + gap : 0;
    painter.drawImage(iconX, 0, icon);

    painter.setFont(textFont);
    painter.setPen(style.color.isValid() ? style.color
                                         : QGuiApplication::palette().color(QPalette::WindowText));
    const QFontMetrics metrics(textFont);
    const int cell = digitCellWidth(metrics);
    // Whole-pixel baseline, centred on the cap height, so stems land on pixel rows.
    const int baseline = (height + metrics.capHeight()) / 2;
    const int used = textWidth(text, textFont);
    // The text hugs the icon: left-aligned after it, right-aligned before it.
    int x = style.textBeforeIcon ? field - used : icon.width() + gap;
    for (const QChar c : text) {
        if (c.isDigit()) {
            const int advance = metrics.horizontalAdvance(c);
            painter.drawText(x + (cell - advance) / 2, baseline, QString(c));
            x += cell;
        } else {
            painter.drawText(x, baseline, QString(c));
            x += metrics.horizontalAdvance(c);
        }
    }
    painter.end();
    return out.convertToFormat(QImage::Format_ARGB32);
}

}  // namespace trotlet::platform
