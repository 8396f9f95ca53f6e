#include "ui/theme/Theme.h"

namespace trotlet::ui {
namespace {

Palette lightPalette() {
    Palette p;
    p.window = QColor(0xF4, 0xF4, 0xF6);
    p.surface = QColor(0xFF, 0xFF, 0xFF);
    p.surfaceHover = QColor(0xFA, 0xFA, 0xFC);
    p.border = QColor(0, 0, 0, 22);
    p.separator = QColor(0, 0, 0, 18);
    p.text = QColor(0x1D, 0x1D, 0x21);
    p.textSecondary = QColor(0x5F, 0x60, 0x68);
    p.textTertiary = QColor(0x8E, 0x8F, 0x98);
    p.accent = QColor(0x2F, 0x6F, 0xEB);
    p.onAccent = QColor(0xFF, 0xFF, 0xFF);
    p.focusRing = QColor(0x2F, 0x6F, 0xEB);
    p.chip = QColor(0, 0, 0, 14);
    p.track = QColor(0, 0, 0, 16);
    p.headerTop = QColor(0xDD, 0xE9, 0xFB);
    p.headerBottom = QColor(0xF4, 0xF4, 0xF6);
    p.calm = QColor(0x23, 0x9A, 0x5B);
    p.busy = QColor(0xC8, 0x8A, 0x00);
    p.hot = QColor(0xE0, 0x6A, 0x10);
    p.critical = QColor(0xD9, 0x32, 0x3A);
    p.knob = QColor(0xFF, 0xFF, 0xFF);
    p.shadow = QColor(0, 0, 0, 46);
    p.trayBar = QColor(0x24, 0x24, 0x28);
    p.trayText = QColor(0xF4, 0xF4, 0xF6);
    return p;
}

Palette darkPalette() {
    Palette p;
    p.window = QColor(0x1B, 0x1B, 0x1F);
    p.surface = QColor(0x27, 0x27, 0x2D);
    p.surfaceHover = QColor(0x2E, 0x2E, 0x35);
    p.border = QColor(255, 255, 255, 20);
    p.separator = QColor(255, 255, 255, 18);
    p.text = QColor(0xF1, 0xF1, 0xF4);
    p.textSecondary = QColor(0xA8, 0xA9, 0xB2);
    p.textTertiary = QColor(0x75, 0x76, 0x80);
    p.accent = QColor(0x5B, 0x93, 0xFF);
    p.onAccent = QColor(0xFF, 0xFF, 0xFF);
    p.focusRing = QColor(0x7B, 0xA8, 0xFF);
    p.chip = QColor(255, 255, 255, 20);
    p.track = QColor(255, 255, 255, 22);
    p.headerTop = QColor(0x1E, 0x2A, 0x44);
    p.headerBottom = QColor(0x1B, 0x1B, 0x1F);
    p.calm = QColor(0x3D, 0xC7, 0x7E);
    p.busy = QColor(0xF0, 0xB4, 0x29);
    p.hot = QColor(0xFF, 0x8A, 0x3D);
    p.critical = QColor(0xFF, 0x5C, 0x63);
    p.knob = QColor(0xF1, 0xF1, 0xF4);
    p.shadow = QColor(0, 0, 0, 110);
    p.trayBar = QColor(0x0E, 0x0E, 0x11);
    p.trayText = QColor(0xF1, 0xF1, 0xF4);
    return p;
}

QFont scaled(const QFont& base, qreal factor, QFont::Weight weight) {
    QFont f = base;
    f.setPointSizeF(base.pointSizeF() * factor);
    f.setWeight(weight);
    return f;
}

}  // namespace

QColor Palette::level(panel::Level l) const {
    switch (l) {
        case panel::Level::calm:
            return calm;
        case panel::Level::busy:
            return busy;
        case panel::Level::hot:
            return hot;
        case panel::Level::critical:
            return critical;
    }
    return calm;
}

QColor Palette::named(std::string_view name) const {
    // Tuned to sit on both palettes' surfaces: mid lightness, moderate saturation.
    const bool dark = window.lightness() < 128;
    auto pick = [dark](QColor light, QColor darker) { return dark ? darker : light; };
    if (name == "blue") return pick(QColor(0x2F, 0x6F, 0xEB), QColor(0x5B, 0x93, 0xFF));
    if (name == "purple") return pick(QColor(0x8A, 0x4F, 0xD8), QColor(0xB0, 0x85, 0xFF));
    if (name == "teal") return pick(QColor(0x0F, 0x95, 0x9A), QColor(0x3C, 0xCB, 0xCF));
    if (name == "green") return pick(QColor(0x23, 0x9A, 0x5B), QColor(0x3D, 0xC7, 0x7E));
    if (name == "orange") return pick(QColor(0xE0, 0x6A, 0x10), QColor(0xFF, 0x8A, 0x3D));
    if (name == "yellow") return pick(QColor(0xC8, 0x8A, 0x00), QColor(0xF0, 0xB4, 0x29));
    if (name == "indigo") return pick(QColor(0x4B, 0x55, 0xD6), QColor(0x85, 0x8D, 0xFF));
    if (name == "pink") return pick(QColor(0xD6, 0x3C, 0x86), QColor(0xFF, 0x74, 0xB2));
    if (name == "cyan") return pick(QColor(0x12, 0x8C, 0xC4), QColor(0x4C, 0xC3, 0xF5));
    return accent;
}

TypeScale TypeScale::from(const QFont& base) {
    TypeScale t;
    t.caption = scaled(base, 0.86, QFont::Normal);
    t.body = scaled(base, 1.0, QFont::Normal);
    t.label = scaled(base, 0.92, QFont::DemiBold);
    t.headline = scaled(base, 2.1, QFont::DemiBold);
    t.headlineSmall = scaled(base, 1.6, QFont::DemiBold);
    t.unit = scaled(base, 1.0, QFont::Medium);
    t.title = scaled(base, 1.15, QFont::Bold);
    return t;
}

Theme Theme::make(panel::ColorScheme scheme, const QFont& base) {
    Theme theme;
    theme.scheme_ = scheme;
    theme.palette_ = scheme == panel::ColorScheme::dark ? darkPalette() : lightPalette();
    theme.type_ = TypeScale::from(base);
    return theme;
}

}  // namespace trotlet::ui
