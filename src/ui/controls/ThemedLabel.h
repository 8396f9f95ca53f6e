#pragma once

#include <QLabel>

namespace trotlet::ui {

class ThemeStore;

// A label in one of the panel's text roles; it follows the theme as it changes.
class ThemedLabel : public QLabel {
    Q_OBJECT
public:
    enum class Role {
        title,      // a row's name
        detail,     // the line under it
        warning,    // a detail that reports a problem
        heading,    // above a block
        footnote,   // under a block
        value,      // a slider's value beside its title
        pageTitle,  // a screen's title
        display,    // the welcome tour's big titles
        lead,       // the sentence under a big title
    };

    ThemedLabel(const QString& text, Role role, const ThemeStore& theme, QWidget* parent = nullptr);
    void setRole(Role role);
    Role role() const { return role_; }

private:
    void applyTheme();

    Role role_;
    const ThemeStore& theme_;
};

}  // namespace trotlet::ui
