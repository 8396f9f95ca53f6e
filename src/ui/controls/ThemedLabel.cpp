#include "ui/controls/ThemedLabel.h"

#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

ThemedLabel::ThemedLabel(const QString& text, Role role, const ThemeStore& theme, QWidget* parent)
    : QLabel(text, parent), role_(role), theme_(theme) {
    setTextFormat(Qt::PlainText);
    setWordWrap(role != Role::value && role != Role::pageTitle);
    if (role == Role::display) setWordWrap(true);
    connect(&theme_, &ThemeStore::changed, this, &ThemedLabel::applyTheme);
    applyTheme();
}

void ThemedLabel::setRole(Role role) {
    if (role == role_) return;
    role_ = role;
    applyTheme();
}

void ThemedLabel::applyTheme() {
    const Theme& t = theme_.theme();
    const Palette& pal = t.palette();
    QFont font = t.type().body;
    QColor color = pal.text;
    switch (role_) {
        case Role::title:
            break;
        case Role::detail:
            font = t.type().caption;
            color = pal.textSecondary;
            break;
        case Role::warning:
            font = t.type().caption;
            color = pal.critical;
            break;
        case Role::heading:
            font = t.type().label;
            color = pal.textSecondary;
            break;
        case Role::footnote:
            font = t.type().caption;
            color = pal.textSecondary;
            break;
        case Role::value:
            font = t.type().label;
            color = pal.accent;
            break;
        case Role::pageTitle:
            font = t.type().title;
            break;
        case Role::display:
            font = t.type().headlineSmall;
            break;
        case Role::lead:
            color = pal.textSecondary;
            break;
    }
    setFont(font);
    QPalette palette = this->palette();
    palette.setColor(QPalette::WindowText, color);
    palette.setColor(QPalette::Text, color);
    setPalette(palette);
}

}  // namespace trotlet::ui
