#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <memory>
#include <optional>
#include <string>

#include "cli/LaunchOptions.h"
#include "panel/Onboarding.h"
#include "panel/PanelRoute.h"
#include "panel/SettingsScreen.h"

namespace trotlet::settings {
class AppSettings;
}
namespace trotlet::platform {
class ColorScheme;
}
namespace trotlet::processes {
class ProcessesController;
}
namespace trotlet::ui {
class PanelModel;
class PanelWindow;
class PublicAddressLookup;
class SettingsController;
class SettingsView;
class ThemeStore;
}  // namespace trotlet::ui

namespace trotlet::updates {
class UpdatesRuntime;
}

namespace trotlet::app {

class AppModel;

// Owns the panel window and feeds it from the live model. The window, its model and its
// drawn caches are built on the first open and released once the panel has been closed for a
// minute, so a closed panel costs nothing but the theme.
class PanelHost : public QObject {
    Q_OBJECT
public:
    PanelHost(AppModel& model, settings::AppSettings& settings, const cli::LaunchOptions& options,
              QObject* parent = nullptr);
    ~PanelHost() override;

    // The window, built on first use.
    ui::PanelWindow& window();
    bool isBuilt() const { return window_ != nullptr; }
    bool isOpen() const;

    // Shows the built window (placed by the caller) and starts feeding it. `startedAt` is when
    // the request arrived, for TROTLET_PANEL_PERF.
    void show(const QElapsedTimer& startedAt);
    void hide();
    void showTab(panel::PanelTab tab);
    // Opens a metric's detail over the Overview.
    void showDetail(panel::MetricDetail detail);
    // The updates whose notice the panel shows (install for this user, a newer version,
    // What's new), and whose buttons it presses.
    void setUpdates(updates::UpdatesRuntime* updates);

    // Releases the window now (tests; the timer does it after a minute).
    void release();

    // What Settings and the welcome tour read from the app, and where their actions arrive.
    ui::SettingsController& settingsController() { return *controller_; }
    const ui::ThemeStore& theme() const { return *theme_; }
    // The Settings tab's screen; none until the window is built.
    ui::SettingsView* settingsView() const { return settingsView_; }
    // Covers the panel with the welcome tour, at the step it was left at.
    void showOnboarding();
    bool isShowingOnboarding() const;
    bool releasePending() const { return releaseTimer_.isActive(); }

signals:
    void closeRequested(const QString& reason);
    void quitRequested(const QString& reason);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    void build();
    void feedSample();
    void feedMascot();
    void feedShop();
    void feedPaw();
    void feedWeather();
    void feedNotice();
    void connectUpdates();
    QWidget* buildProcesses();  // the Processes screen, with its controller
    void wireSettings();
    void perform(panel::RowAction action);
    void updateShortcutFacts();

    AppModel& app_;
    settings::AppSettings& settings_;
    cli::LaunchOptions options_;
    std::unique_ptr<ui::ThemeStore> theme_;
    platform::ColorScheme* colorScheme_ = nullptr;
    std::unique_ptr<ui::PanelModel> model_;
    std::unique_ptr<ui::PanelWindow> window_;
    updates::UpdatesRuntime* updates_ = nullptr;
    processes::ProcessesController* processes_ = nullptr;  // owned by the model
    QTimer releaseTimer_;
    std::optional<QElapsedTimer> perfClock_;
    std::string perfWhat_;
    ui::PublicAddressLookup* publicAddress_ = nullptr;
    bool builtSinceShown_ = false;
    int appearanceObserver_ = -1;
    int settingsObserverForShortcut_ = -1;
    std::unique_ptr<ui::SettingsController> controller_;
    ui::SettingsView* settingsView_ = nullptr;
    panel::OnboardingStep onboardingStep_ = panel::OnboardingStep::meet;
};

}  // namespace trotlet::app
