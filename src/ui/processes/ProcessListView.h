#pragma once

#include <QAbstractScrollArea>
#include <QTimer>

#include <optional>
#include <set>

#include "processes/ListGeometry.h"
#include "processes/ProcessTexts.h"

namespace trotlet::processes {
class ProcessesController;
}

namespace trotlet::ui {

class PanelModel;
class ThemeStore;

// Every process as a row, painted straight from the controller's table: only the rows in view
// are drawn, and scrolling moves the pixels already drawn, so thousands of rows cost what a
// screenful does. Rows open to show their details and their Quit action; the scroll position
// stays where the user left it while samples reorder the rows.
//
// While the pointer moves over the list its rows hold still (see ProcessTable); a pointer left
// resting lets the order follow the samples again after a few seconds.
//
// Keys: Up, Down, Page Up, Page Down, Home and End move the selection; Enter, Space, Right and
// Left open and close the selected row; Delete quits it (and, once it is not responding, asks to
// force it). Typing a letter starts a search (`typed`). The context menu offers the same.
class ProcessListView : public QAbstractScrollArea {
    Q_OBJECT
public:
    ProcessListView(processes::ProcessesController& controller, const PanelModel& model,
                    const ThemeStore& theme, QWidget* parent = nullptr);

    bool isOpened(std::int32_t pid) const { return opened_.count(pid) != 0; }
    void setOpened(std::int32_t pid, bool opened);
    // Scrolls as little as needed to show the selected row.
    void revealSelection();
    // How many times the rows were painted (tests).
    int paintCount() const { return paints_; }

signals:
    // Printable text typed while the list had the keyboard: it belongs in the search field.
    void typed(const QString& text);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void scrollContentsBy(int dx, int dy) override;
    void keyPressEvent(QKeyEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseDoubleClickEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void contextMenuEvent(QContextMenuEvent* event) override;
    void focusInEvent(QFocusEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    bool viewportEvent(QEvent* event) override;

private:
    void refresh();
    void updateRange();
    void announceSelection();
    std::optional<std::size_t> rowAt(const QPointF& viewportPos) const;
    QRectF lineRect(std::size_t index) const;  // in viewport coordinates
    QRectF detailsRect(std::size_t index) const;
    processes::ProcessTexts::Action actionFor(std::size_t index) const;
    void act(std::int32_t pid, processes::ProcessTexts::Action::Button button);
    void setHovered(std::optional<std::size_t> index);
    void holdRows();
    int offset() const;

    processes::ProcessesController& controller_;
    const PanelModel& model_;
    const ThemeStore& theme_;
    processes::ListGeometry geometry_;
    std::set<std::int32_t> opened_;
    std::optional<std::size_t> hovered_;
    std::optional<QPointF> pointer_;
    std::optional<std::int32_t> announced_;
    QTimer holdTimer_;
    int paints_ = 0;
};

}  // namespace trotlet::ui
