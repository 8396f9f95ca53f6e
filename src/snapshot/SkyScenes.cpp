// The header's sky for every condition at every phase, the moods over a clear day, and the Paw
// Report's card and detail.
#include <QWidget>

#include "layout/GridGeometry.h"
#include "layout/OverviewCardRegistry.h"
#include "panel/HeaderContent.h"
#include "reports/qt/PawReportView.h"
#include "settings/RawEnum.h"
#include "sky/qt/SkyBackdrop.h"
#include "snapshot/SceneFixtures.h"
#include "snapshot/ScenePainting.h"
#include "snapshot/SceneRig.h"
#include "snapshot/Scenes.h"
#include "ui/cards/CardView.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"

namespace trotlet::snapshot {
namespace {

void stage(QWidget& widget) {
    widget.setAttribute(Qt::WA_DontShowOnScreen);
    widget.show();
}

// The header alone at a moment of the scenes' day, under a forecast (or none), in a mood.
class SkyHeaderStage : public SceneStage {
public:
    SkyHeaderStage(std::optional<int> code, sky::SkyPhase phase, mascot::MascotMood mood)
        : rig_(fixtureForMood(mood)), header_(rig_.model(), rig_.theme()) {
        auto& model = rig_.model();
        const metrics::Timestamp at = scenePhaseTime(phase, code.has_value());
        model.setClock([at] { return at; });
        auto state = model.mascotVisual();
        state.mood = mood;
        model.setMascot(model.mascotId(), state, 8);
        rig_.settings().weather().setShowInHeader(true);
        if (code) {
            auto report = sceneForecast(*code);
            const auto now =
                std::chrono::duration_cast<std::chrono::seconds>(at.time_since_epoch()).count();
            report.fetchedAt = now - 600;
            model.setWeather(panel::summarizeWeather(report, now), report);
        }
        header_.setFixedWidth(ui::Metrics::panelWidth);
        header_.setAnimating(false);
        new sky::SkyBackdrop(header_, model, rig_.theme());
        stage(header_);
    }
    QImage render(panel::ColorScheme scheme) override { return rig_.render(header_, scheme); }

private:
    SceneRig rig_;
    ui::PanelHeader header_;
};

// The panel with the Paw Report's detail pushed over the Overview.
class PawDetailStage : public SceneStage {
public:
    PawDetailStage() : rig_(metrics::MetricsFixture::normal), window_(rig_.model(), rig_.theme()) {
        rig_.model().setWeather(sceneWeather(), sceneForecast(2));
        window_.header().setAnimating(false);
        window_.pushDetail(new reports::PawReportView(rig_.model(), rig_.theme()));
        window_.setFixedHeight(ui::Metrics::maxPanelHeight);
        stage(window_);
    }
    QImage render(panel::ColorScheme scheme) override { return rig_.render(window_, scheme); }

private:
    SceneRig rig_;
    ui::PanelWindow window_;
};

// The Paw Report card at each size it comes in, one under the other.
class PawCardSizesStage : public SceneStage {
public:
    PawCardSizesStage() : rig_(metrics::MetricsFixture::normal) {
        const auto* kind = layout::OverviewCardRegistry::standard().kind("pawreport");
        const int margin = ui::Metrics::margin;
        int y = margin;
        for (auto size : kind->sizes) {
            const auto r = layout::GridMetrics::points({0, 0, kind->span(size)});
            auto* card = new ui::CardView("pawreport", size, rig_.model(), rig_.theme(), &canvas_);
            card->setGeometry(margin, y, int(r.width), int(r.height));
            y += int(r.height) + ui::Metrics::gap;
        }
        canvas_.setFixedSize(ui::Metrics::panelWidth, y - ui::Metrics::gap + margin);
        canvas_.setAutoFillBackground(true);
        stage(canvas_);
    }
    QImage render(panel::ColorScheme scheme) override {
        rig_.theme().setPreference(scheme == panel::ColorScheme::dark
                                       ? settings::AppearancePreference::dark
                                       : settings::AppearancePreference::light);
        QPalette palette = canvas_.palette();
        palette.setColor(QPalette::Window, rig_.theme().theme().palette().window);
        canvas_.setPalette(palette);
        return rig_.render(canvas_, scheme);
    }

private:
    SceneRig rig_;
    QWidget canvas_;
};

}  // namespace

void addSkyScenes(std::vector<Scene>& scenes) {
    for (std::size_t c = 0; c <= weather::WeatherConditionNames.size(); ++c) {
        const bool none = c == weather::WeatherConditionNames.size();
        const std::optional<int> code =
            none ? std::nullopt : std::optional(sceneCode(weather::WeatherCondition(c)));
        const std::string condition =
            none ? "none" : std::string(weather::WeatherConditionNames[c]);
        for (std::size_t p = 0; p < sky::SkyPhaseNames.size(); ++p) {
            const auto phase = sky::SkyPhase(p);
            scenes.push_back({"header-sky-" + condition + "-" + std::string(sky::SkyPhaseNames[p]),
                              [code, phase] {
                                  return std::make_unique<SkyHeaderStage>(
                                      code, phase, mascot::MascotMood::running);
                              }});
        }
    }
    for (std::size_t m = 0; m < mascot::MascotMoodNames.size(); ++m) {
        const auto mood = mascot::MascotMood(m);
        scenes.push_back({"header-mood-" + std::string(mascot::MascotMoodNames[m]), [mood] {
                              return std::make_unique<SkyHeaderStage>(0, sky::SkyPhase::day, mood);
                          }});
    }
    scenes.push_back({"panel-detail-pawreport", [] { return std::make_unique<PawDetailStage>(); }});
    scenes.push_back(
        {"panel-overview-pawreport-sizes", [] { return std::make_unique<PawCardSizesStage>(); }});
}

}  // namespace trotlet::snapshot
