#pragma once

#include <QAbstractButton>

#include <string>

namespace trotlet::ui {

class ThemeStore;

// The Shop's buttons, painted from the theme: a filled pill for the main action, a tinted one
// for a second choice, a text link, and a round icon for closing a banner. Space and Enter
// press it; the ring shows only for keyboard focus.
class ShopButton : public QAbstractButton {
    Q_OBJECT
public:
    enum class Style { primary, secondary, link, icon };

    ShopButton(Style style, const ThemeStore& theme, QWidget* parent = nullptr);

    Style style() const { return style_; }
    // A symbol before the label (or alone, for the icon style).
    void setSymbol(std::string symbol);
    // A symbol after the label: a chevron for links that open a page.
    void setTrailingSymbol(std::string symbol);
    void setCompact(bool compact);
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

private:
    Style style_;
    const ThemeStore& theme_;
    std::string symbol_;
    std::string trailing_;
    bool compact_ = false;
    bool hovered_ = false;
    bool keyboardFocus_ = false;
};

}  // namespace trotlet::ui
