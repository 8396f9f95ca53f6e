#include "snapshot/SettingsScenes.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QLineEdit>
#include <QThread>
#include <QTimer>
#include <QWidget>

#include "BuildInfo.h"
#include "metrics/MetricsFixture.h"
#include "panel/Onboarding.h"
#include "settings/RawEnum.h"
#include "snapshot/ScenePainting.h"
#include "snapshot/SceneRig.h"
#include "ui/controls/ShortcutRecorder.h"
#include "ui/onboarding/OnboardingView.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"
#include "ui/settings/PlaceSearchField.h"
#include "ui/settings/SettingsController.h"
#include "ui/settings/SettingsPageView.h"
#include "ui/settings/SettingsRowView.h"
#include "ui/settings/SettingsView.h"
#include "weather/WeatherFetching.h"
#include "weather/qt/WeatherSearch.h"

namespace trotlet::snapshot {
namespace {

using metrics::MetricsFixture;

void settle() {
    for (int i = 0; i < 4; ++i) QApplication::processEvents();
}

weather::WeatherLocation place(std::int64_t id, const char* name, const char* region,
                               const char* country, double lat, double lon) {
    weather::WeatherLocation l;
    l.id = id;
    l.name = name;
    l.region = region;
    l.country = country;
    l.latitude = lat;
    l.longitude = lon;
    return l;
}

// Answers every search from a fixed list, on the next turn of the event loop.
class CannedFetcher final : public weather::WeatherFetching {
public:
    struct Handle final : weather::FetchHandle {
        void cancel() override { cancelled = true; }
        bool cancelled = false;
    };
    std::shared_ptr<weather::FetchHandle> forecast(const weather::WeatherLocation&,
                                                   ForecastDone done) override {
        auto handle = std::make_shared<Handle>();
        QTimer::singleShot(0, [handle, done] {
            done(handle->cancelled ? weather::WeatherError::cancelled()
                                   : weather::WeatherError::offline());
        });
        return handle;
    }
    std::shared_ptr<weather::FetchHandle> search(const std::string&, const std::string&,
                                                 SearchDone done) override {
        auto handle = std::make_shared<Handle>();
        QTimer::singleShot(0, [handle, done] {
            if (handle->cancelled) return done(weather::WeatherError::cancelled());
            done(std::vector<weather::WeatherLocation>{
                place(1, "Springfield", "Illinois", "United States", 39.8, -89.6),
                place(2, "Springfield", "Missouri", "United States", 37.2, -93.3),
                place(3, "Springfield", "Massachusetts", "United States", 42.1, -72.6),
                place(4, "Spring", "Texas", "United States", 30.1, -95.4)});
        });
        return handle;
    }
};

// The panel on its Settings tab, as the live app builds it.
class SettingsStage : public SceneStage {
public:
    SettingsStage() : rig_(MetricsFixture::normal), window_(rig_.model(), rig_.theme()) {
        controller_.setAbout(QString::fromLatin1(build::version), {},
                             QStringLiteral("~/.config/trotlet"),
                             QStringLiteral("~/.local/share/trotlet"));
        controller_.setShortcut(panel::ShortcutStatus::active, {});
        controller_.setPlaceSearch(std::make_unique<weather::WeatherSearch>(&fetcher_, "en", 0));
        rig_.settings().weather().setEncodedLocation(weather::encodeLocationSetting(
            place(2950159, "Berlin", "Land Berlin", "Germany", 52.52, 13.41)));
        rig_.settings().weather().setShowInHeader(true);
        rig_.model().setWeather(sceneWeather());
        view_ = new ui::SettingsView(rig_.model(), rig_.theme(), controller_);
        window_.setTabScreen(panel::PanelTab::settings, view_);
        window_.showTab(panel::PanelTab::settings);
        window_.header().setAnimating(false);
        window_.setAttribute(Qt::WA_DontShowOnScreen);
        window_.show();
        QApplication::setActiveWindow(&window_);
    }
    QImage render(panel::ColorScheme scheme) override {
        view_->refreshNow();
        settle();
        return rig_.render(window_, scheme);
    }

    SceneRig& rig() { return rig_; }
    ui::SettingsView& view() { return *view_; }
    ui::SettingsController& controller() { return controller_; }
    ui::PanelWindow& window() { return window_; }

private:
    CannedFetcher fetcher_;
    SceneRig rig_;
    ui::SettingsController controller_;
    ui::PanelWindow window_;
    ui::SettingsView* view_ = nullptr;
};

std::unique_ptr<SceneStage> sectionScene(panel::SettingsSection section) {
    auto stage = std::make_unique<SettingsStage>();
    auto& s = stage->rig().settings();
    if (section == panel::SettingsSection::menuBar)
        s.menuBar().setTextMetric(settings::MenuBarTextMetric::cpu);
    if (section == panel::SettingsSection::notifications) s.notifications().setHighCPU(true);
    if (section == panel::SettingsSection::about)
        stage->controller().setUpdates(true, QStringLiteral("Trotlet is up to date."));
    stage->view().openSection(section);
    stage->view().refreshNow();
    return stage;
}

// The tour over the panel, at one step.
class OnboardingStage : public SceneStage {
public:
    OnboardingStage(panel::OnboardingStep step, bool giftOpened)
        : rig_(MetricsFixture::normal), window_(rig_.model(), rig_.theme()) {
        controller_.setPlaceSearch(std::make_unique<weather::WeatherSearch>(&fetcher_, "en", 0));
        controller_.setWelcomeGift(giftOpened, 100);
        if (giftOpened)
            rig_.model().setFishBalance(100);
        else
            rig_.model().setFishBalance(0);
        view_ = new ui::OnboardingView(rig_.model(), rig_.theme(), controller_);
        view_->setAnimating(false);
        view_->showStep(step);
        window_.setCover(view_);
        window_.header().setAnimating(false);
        window_.setAttribute(Qt::WA_DontShowOnScreen);
        window_.show();
        QApplication::setActiveWindow(&window_);
    }
    QImage render(panel::ColorScheme scheme) override {
        settle();
        return rig_.render(window_, scheme);
    }

private:
    CannedFetcher fetcher_;
    SceneRig rig_;
    ui::SettingsController controller_;
    ui::PanelWindow window_;
    ui::OnboardingView* view_ = nullptr;
};

}  // namespace

void addSettingsScenes(std::vector<Scene>& scenes) {
    scenes.push_back({"panel-settings-index", [] { return std::make_unique<SettingsStage>(); }});
    for (std::size_t i = 0; i < panel::SettingsSectionNames.size(); ++i) {
        const auto section = panel::SettingsSection(i);
        scenes.push_back({"panel-settings-" + panel::dashed(panel::SettingsSectionNames[i]),
                          [section] { return sectionScene(section); }});
    }
    scenes.push_back({"panel-settings-weather-search", [] {
                          auto stage = std::make_unique<SettingsStage>();
                          stage->view().openSection(panel::SettingsSection::weather);
                          auto* row = stage->view().page()->row("placeSearch");
                          auto* field = row->placeField();
                          field->edit().setFocus(Qt::TabFocusReason);
                          field->edit().setText(QStringLiteral("Spring"));
                          emit field->edit().textEdited(QStringLiteral("Spring"));
                          // The line edit fades its clear button in (160 ms): wait it out,
                          // or renders differ with the machine's speed.
                          QElapsedTimer fade;
                          fade.start();
                          while (fade.elapsed() < 250) {
                              settle();
                              QThread::msleep(5);
                          }
                          field->suggestions().setHighlighted(1);
                          return stage;
                      }});
    scenes.push_back({"panel-settings-shortcut-recording", [] {
                          auto stage = std::make_unique<SettingsStage>();
                          stage->view().openSection(panel::SettingsSection::general);
                          auto* recorder = stage->view().page()->row("shortcut")->recorder();
                          recorder->setFocus(Qt::TabFocusReason);
                          recorder->startRecording();
                          return stage;
                      }});
    for (std::size_t i = 0; i < panel::OnboardingStepNames.size(); ++i) {
        const auto step = panel::OnboardingStep(i);
        scenes.push_back({"panel-onboarding-" + panel::dashed(panel::OnboardingStepNames[i]),
                          [step] { return std::make_unique<OnboardingStage>(step, false); }});
    }
    scenes.push_back(
        {"panel-onboarding-gift-opened",
         [] { return std::make_unique<OnboardingStage>(panel::OnboardingStep::gift, true); }});
}

}  // namespace trotlet::snapshot
