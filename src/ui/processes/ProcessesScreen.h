#pragma once

#include <QWidget>

namespace trotlet::processes {
class ProcessesController;
}

namespace trotlet::ui {

class ColumnHeader;
class ForceQuitSheet;
class PanelModel;
class ProcessListView;
class SearchField;
class ThemeStore;

// The Processes tab: a search field over a card holding the column header and the list, and
// the Force Quit question when one is asked. Ctrl+F goes to the search field; typing in the list
// searches too. It tells when it shows, so the full process list is read only then.
class ProcessesScreen : public QWidget {
    Q_OBJECT
public:
    ProcessesScreen(processes::ProcessesController& controller, const PanelModel& model,
                    const ThemeStore& theme, QWidget* parent = nullptr);

    SearchField& search() const { return *search_; }
    ColumnHeader& header() const { return *header_; }
    ProcessListView& list() const { return *list_; }
    ForceQuitSheet& sheet() const { return *sheet_; }

    QSize sizeHint() const override;

signals:
    void shownChanged(bool shown);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void followController();

    processes::ProcessesController& controller_;
    const ThemeStore& theme_;
    SearchField* search_ = nullptr;
    QWidget* card_ = nullptr;
    ColumnHeader* header_ = nullptr;
    ProcessListView* list_ = nullptr;
    ForceQuitSheet* sheet_ = nullptr;
};

}  // namespace trotlet::ui
