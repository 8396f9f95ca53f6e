#include "menubar/qt/TickerFont.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QString>

namespace trotlet::menubar {

bool hasEvenDigits(const QFont& font) {
    const QFontMetricsF metrics(font);
    const qreal first = metrics.horizontalAdvance(QLatin1Char('0'));
    for (char c = '1'; c <= '9'; ++c)
        if (qAbs(metrics.horizontalAdvance(QLatin1Char(c)) - first) > 0.01) return false;
    return true;
}

QFont tickerFont() {
    QFont font = QFontDatabase::systemFont(QFontDatabase::GeneralFont);
    font.setPointSizeF(11);
    font.setWeight(QFont::Medium);
    if (hasEvenDigits(font)) return font;
    QFont fixed = QFontDatabase::systemFont(QFontDatabase::FixedFont);
    fixed.setPointSizeF(11);
    fixed.setWeight(QFont::Medium);
    return fixed;
}

TickerWidth::Measure tickerMeasure() {
    return [metrics = QFontMetricsF(tickerFont())](std::string_view text) {
        return metrics.horizontalAdvance(
            QString::fromUtf8(text.data(), static_cast<qsizetype>(text.size())));
    };
}

}  // namespace trotlet::menubar
