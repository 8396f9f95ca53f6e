#pragma once

#include <QWidget>

namespace trotlet::ui {

class ShopButton;
class ThemeStore;

// A section's title with a short fact on the right ("Mascots", "3 of 13 owned").
class SectionTitle : public QWidget {
    Q_OBJECT
public:
    SectionTitle(const QString& title, const ThemeStore& theme, QWidget* parent = nullptr);
    void setTitle(const QString& title);
    void setFact(const QString& fact);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString title_;
    QString fact_;
    const ThemeStore& theme_;
};

// The top row of a Shop sub-page: "‹ Shop" back to the tab's main page, and the page's title.
class PageHeader : public QWidget {
    Q_OBJECT
public:
    PageHeader(const QString& title, const ThemeStore& theme, QWidget* parent = nullptr);
    ShopButton& backButton() const { return *back_; }

signals:
    void backRequested();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QString title_;
    const ThemeStore& theme_;
    ShopButton* back_ = nullptr;
};

}  // namespace trotlet::ui
