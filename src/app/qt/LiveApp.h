#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QElapsedTimer>
#include <QObject>
#include <QPoint>
#include <QSize>
#include <QString>

#include "cli/LaunchOptions.h"
#include "panel/PanelRoute.h"
#include "settings/AppSettings.h"

class QMenu;

namespace trotlet::updates {
class UpdatesRuntime;
}

namespace trotlet::app {

class AppModel;
class PanelHost;
class SignalRelay;

// The live app: the session's settings, the tray item with its menu, the engines (AppModel),
// the panel and the process signals.
class LiveApp : public QObject {
    Q_OBJECT
public:
    LiveApp(const cli::LaunchOptions& options, const std::vector<std::string>& args);
    ~LiveApp() override;

    settings::AppSettings& settings() { return *settings_; }
    updates::UpdatesRuntime& updates() { return *updates_; }
    AppModel& model() { return *model_; }
    PanelHost& panel() { return *panel_; }
    bool isPanelOpen() const;
    panel::PanelTab panelTab() const { return tab_; }

public slots:
    void togglePanel(const QString& reason);
    void openPanel(const QString& reason);
    // Opens the panel on a tab, or switches an open panel to it.
    void showPanelTab(panel::PanelTab tab, const QString& reason);
    void closePanel(const QString& reason);
    void quit(const QString& reason);

private:
    void buildTray();
    void logRoute() const;
    void placePanel();

    cli::LaunchOptions options_;
    std::unique_ptr<settings::AppSettings> settings_;
    std::unique_ptr<QMenu> menu_;
    AppModel* model_ = nullptr;
    // The point of the tray click that is about to open the panel; other ways of opening
    // (menu, shortcut, signal) have none.
    std::optional<QPoint> pendingClick_;
    // The last click that placed the panel: the tray's position, for opens without a click.
    std::optional<QPoint> lastTrayClick_;
    // A Wayland host's activation token for the window raised by the click it came with.
    QString pendingToken_;
    panel::PanelTab tab_ = panel::PanelTab::overview;
    std::optional<panel::MetricDetail> detail_;
    PanelHost* panel_ = nullptr;
    QElapsedTimer openClock_;
    SignalRelay* signals_ = nullptr;
    updates::UpdatesRuntime* updates_ = nullptr;
};

}  // namespace trotlet::app
