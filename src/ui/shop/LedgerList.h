#pragma once

#include <QWidget>

#include <vector>

#include "shop/ShopScreenContent.h"

class QScrollArea;

namespace trotlet::ui {

class ThemeStore;

// The Fish history, newest first, grouped by day: every row with its symbol, title, subtitle,
// signed amount and time. One painted widget for all 500 rows: a paint draws only the rows in
// view, so scrolling costs the same at any length. Up and Down walk the rows.
class LedgerList : public QWidget {
    Q_OBJECT
public:
    LedgerList(const ThemeStore& theme, QWidget* parent = nullptr);

    void setSections(const std::vector<shop::LedgerSection>& sections);
    // The scroll area that shows this list, to keep the current row in view.
    void setScrollArea(QScrollArea* area) { area_ = area; }
    int rowCount() const { return rows_; }
    int currentRow() const { return current_; }
    void setCurrentRow(int row);
    // Rows painted by the last paint, for the cost of a scroll.
    int lastPaintedRows() const { return lastPainted_; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    struct Item {
        int top = 0;
        int section = 0;
        int row = -1;   // -1: the section's heading
        int flat = -1;  // the row's index among all rows
        QString title, subtitle, amount, time;
        std::string symbol;
        int sign = 0;
    };
    QString sectionLabel(const shop::LedgerSection& section) const;
    int itemAt(int y) const;
    void announce();

    const ThemeStore& theme_;
    std::vector<shop::LedgerSection> sections_;
    std::vector<Item> items_;
    std::vector<int> rowItem_;  // flat row -> item
    QScrollArea* area_ = nullptr;
    int rows_ = 0;
    int current_ = -1;
    int lastPainted_ = 0;
    bool keyboardFocus_ = false;
};

}  // namespace trotlet::ui
