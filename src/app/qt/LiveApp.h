#pragma once

#include <memory>
#include <string>
#include <vector>

#include <QObject>
#include <QPoint>

#include "app/AppSettings.h"
#include "app/LaunchOptions.h"

class QMenu;
class QWidget;

namespace trotlet::app {

class AppModel;
class SignalRelay;

// The live app as far as it is built: the session's settings, the tray item with its menu,
// the panel window (a placeholder until the panel lands) and the process signals. The
// metrics, mascot, economy and weather objects attach here as they arrive.
class LiveApp : public QObject {
    Q_OBJECT
public:
    LiveApp(const LaunchOptions& options, const std::vector<std::string>& args);
    ~LiveApp() override;

    AppSettings& settings() { return *settings_; }
    bool isPanelOpen() const;

public slots:
    void togglePanel(const QString& reason);
    void openPanel(const QString& reason);
    void closePanel(const QString& reason);
    void quit(const QString& reason);

private:
    void buildTray();
    void buildPanel();

    LaunchOptions options_;
    std::unique_ptr<AppSettings> settings_;
    std::unique_ptr<QMenu> menu_;
    AppModel* model_ = nullptr;
    QPoint lastClick_;
    std::unique_ptr<QWidget> panel_;
    SignalRelay* signals_ = nullptr;
};

}  // namespace trotlet::app
