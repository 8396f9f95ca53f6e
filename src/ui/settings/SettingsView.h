#pragma once

#include <QWidget>

#include <memory>
#include <optional>
#include <utility>
#include <vector>

#include "panel/SettingsScreen.h"
#include "ui/settings/SettingsRowView.h"

class QScrollArea;
class QStackedWidget;

namespace trotlet::settings {
class SettingsGroup;
}

namespace trotlet::ui {

class SettingsIndexView;
class SettingsPageView;

// The Settings tab: the index of sections, and one section at a time over it. Escape or
// Alt+Left on a section goes back to the index, to the section it came from. Both pages scroll
// inside the panel. Everything shown follows the settings, the layout and the live app's facts
// as they change, from this screen or from anywhere else.
class SettingsView : public QWidget {
    Q_OBJECT
public:
    SettingsView(PanelModel& model, const ThemeStore& theme, SettingsController& controller,
                 QWidget* parent = nullptr);
    ~SettingsView() override;

    // `byKeyboard`: the focus lands with a ring, as after Tab; otherwise without one.
    void openSection(panel::SettingsSection section, bool byKeyboard = false);
    void showIndex(bool byKeyboard = false);
    std::optional<panel::SettingsSection> section() const;
    SettingsIndexView& index() const { return *index_; }
    // The open section's page; none on the index.
    SettingsPageView* page() const { return page_; }
    QScrollArea& pageScroll() const { return *pageScroll_; }

    // Asks the rules again on the next turn of the event loop; a burst of changes costs one.
    void scheduleRefresh();
    // Runs a pending refresh now (tests, scenes).
    void refreshNow();

    // The panel gives Settings its full height, so moving between sections does not resize it.
    QSize sizeHint() const override;

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QScrollArea* makeScroll(QWidget* content);

    SettingsContext context_;
    QStackedWidget* stack_ = nullptr;
    QScrollArea* indexScroll_ = nullptr;
    QScrollArea* pageScroll_ = nullptr;
    SettingsIndexView* index_ = nullptr;
    SettingsPageView* page_ = nullptr;
    bool refreshPending_ = false;
    std::vector<std::pair<settings::SettingsGroup*, int>> observers_;
    int layoutObserver_ = -1;
};

}  // namespace trotlet::ui
