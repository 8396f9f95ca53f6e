#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QString>

namespace trotlet::platform {

// Draws the label into the tray icon, for hosts that show icons but ignore the label text.
//
// The text is drawn at the icon's pixel height with digits in cells of equal width, whatever
// the font, so "37%" and "88%" take the same room and the item does not twitch as readings
// change. The text field is as wide as the wider of the text and its guide.
struct TrayItemLabelStyle {
    // Invalid means the palette's window text colour.
    QColor color;
    bool textBeforeIcon = false;
    // Pixels between the icon and the text field.
    int gap = 3;
};

class TrayItemLabelComposer {
public:
    // The font for an icon of this height in device pixels: the system's general font at a
    // medium weight, sized to read well at tray sizes and fully hinted for crisp stems.
    static QFont font(int pixelHeight);
    // Width in pixels the text takes with equal-width digits.
    static int textWidth(const QString& text, const QFont& font);
    // Width of the text field: the wider of the text and the guide, never less than 0.
    static int fieldWidth(const QString& text, const QString& guide, const QFont& font);
    // The icon with the text beside it, as one image of the icon's height. An empty text and
    // guide give the icon unchanged.
    static QImage compose(const QImage& icon, const QString& text, const QString& guide,
                          const TrayItemLabelStyle& style = {});
};

}  // namespace trotlet::platform
