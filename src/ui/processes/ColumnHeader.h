#pragma once

#include <QWidget>

#include "processes/ProcessSort.h"

namespace trotlet::ui {

class ThemeStore;

// The list's column titles: a click sorts by a column (again: the other way round). From the
// keyboard, Left and Right pick a column and Enter or Space sorts by it.
class ColumnHeader : public QWidget {
    Q_OBJECT
public:
    explicit ColumnHeader(const ThemeStore& theme, QWidget* parent = nullptr);

    void setSort(const processes::ProcessSort& sort);
    const processes::ProcessSort& sort() const { return sort_; }
    QSize sizeHint() const override;

signals:
    void sortChosen(trotlet::processes::ProcessSort sort);

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;

private:
    void choose(processes::ProcessColumn column);
    QRectF contentRect() const;

    const ThemeStore& theme_;
    processes::ProcessSort sort_;
    processes::ProcessColumn focused_ = processes::ProcessColumn::cpu;
    bool keyboardFocus_ = false;
};

}  // namespace trotlet::ui
