#pragma once

#include <QWidget>

class QAbstractScrollArea;

namespace trotlet::ui {

class ThemeStore;

// A slim thumb over the right edge of a scroll area, shown only when its content overflows.
// It takes no width from the content, so the grid keeps its exact size.
class ScrollIndicator : public QWidget {
    Q_OBJECT
public:
    ScrollIndicator(QAbstractScrollArea& area, const ThemeStore& theme);

protected:
    void paintEvent(QPaintEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void follow();

    QAbstractScrollArea& area_;
    const ThemeStore& theme_;
};

}  // namespace trotlet::ui
