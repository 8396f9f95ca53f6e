#include "snapshot/Scenes.h"

#include <QGuiApplication>
#include <QPainter>
#include <QWidget>

#include "layout/BentoPacker.h"
#include "layout/GridGeometry.h"
#include "layout/OverviewCardRegistry.h"
#include "mascot/MascotCharacter.h"
#include "mascot/MascotMood.h"
#include "mascot/qt/MascotContactSheet.h"
#include "mascot/qt/MascotRenderer.h"
#include "metrics/MetricsFixture.h"
#include "metrics/SamplingPlan.h"
#include "settings/RawEnum.h"
#include "sky/qt/SkyBackdrop.h"
#include "snapshot/DetailScenes.h"
#include "snapshot/EditScenes.h"
#include "snapshot/ProcessScenes.h"
#include "snapshot/SceneFixtures.h"
#include "snapshot/ScenePainting.h"
#include "snapshot/SceneRig.h"
#include "snapshot/SettingsScenes.h"
#include "snapshot/ShopScenes.h"
#include "ui/cards/CardView.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"
#include "updates/PanelNotice.h"

#include "BuildInfo.h"

namespace trotlet::snapshot {
namespace {

using metrics::MetricsFixture;

// Shows a widget off screen so its layouts settle, and keeps its frame clock still.
void stageWidget(QWidget& widget) {
    widget.setAttribute(Qt::WA_DontShowOnScreen);
    widget.show();
}

class PanelStage : public SceneStage {
public:
    explicit PanelStage(MetricsFixture fixture)
        : rig_(fixture), window_(rig_.model(), rig_.theme()) {
        window_.header().setAnimating(false);
        stageWidget(window_);
    }
    QImage render(panel::ColorScheme scheme) override { return rig_.render(window_, scheme); }

protected:
    SceneRig& rig() { return rig_; }

private:
    SceneRig rig_;
    ui::PanelWindow window_;
};

// The panel opened again after an hour closed: the history holds the end of the last open, the
// closed spell's sparser readings (every 5 s, without disk activity) and the last 40 s.
class ReopenedStage : public PanelStage {
public:
    ReopenedStage() : PanelStage(MetricsFixture::busy) {
        auto& history = rig().history();
        history.clear();
        const auto& now = rig().sample();
        auto before = [&](std::chrono::seconds ago) {
            auto s = now;
            s.timestamp -= ago;
            return s;
        };
        using std::chrono::seconds;
        fillSceneHistory(history, before(seconds(3600)), 40);
        fillSceneHistory(history, before(seconds(42)), 200, 5,
                         metrics::planFor(metrics::ConsumerTier::panelClosed, 2, false).kinds);
        fillSceneHistory(history, now, 21);
        rig().model().setSample(now, metrics::MetricKinds::all);
    }
};

// The panel with a notice under its header.
class NoticeStage : public PanelStage {
public:
    explicit NoticeStage(updates::PanelNotice notice) : PanelStage(MetricsFixture::normal) {
        rig().model().setNotice(std::move(notice));
    }
};

// The notices as the live app builds them, from fixed inputs.
updates::PanelNotice sceneNotice(updates::PanelNotice::Kind kind) {
    using updates::PanelNotice;
    std::optional<updates::InstallDecision> offer;
    updates::UpdateBanner banner;
    std::vector<updates::ReleaseNote> notes;
    switch (kind) {
        case PanelNotice::Kind::installOffer:
            offer = updates::InstallDecision{
                true, true, updates::InstallRule::download,
                "Runs from the download folder; install it to find it in the app menu.",
                "/home/you/.local/opt/trotlet/trotlet"};
            break;
        case PanelNotice::Kind::update: {
            updates::UpdateStatus status;
            status.phase = updates::UpdatePhase::available;
            status.channel = updates::InstallChannel::package;
            updates::FeedRelease release;
            release.version = "0.2.0";
            release.notes = {"Detail screens for every card, with a day of history.",
                             "The Processes tab: sort, search and quit from the panel."};
            status.offer = updates::UpdateOffer{release, std::nullopt};
            banner = updates::updateBanner(status);
            break;
        }
        case PanelNotice::Kind::whatsNew:
            notes = {
                {build::version,
                 "2026-11-22",
                 {"A mascot in the tray that naps, trots and sprints with the load.",
                  "Installs itself for you from a download; says when a new version is out."}}};
            break;
    }
    return *updates::panelNotice(offer, banner, notes, build::version);
}

class HeaderStage : public SceneStage {
public:
    HeaderStage(MetricsFixture fixture, mascot::MascotMood mood)
        : rig_(fixture), header_(rig_.model(), rig_.theme()) {
        auto state = rig_.model().mascotVisual();
        state.mood = mood;
        rig_.model().setMascot(rig_.model().mascotId(), state, 8);
        rig_.settings().weather().setShowInHeader(true);
        rig_.model().setWeather(sceneWeather(), sceneForecast(2));
        header_.setFixedWidth(ui::Metrics::panelWidth);
        header_.setAnimating(false);
        new sky::SkyBackdrop(header_, rig_.model(), rig_.theme());
        stageWidget(header_);
    }
    QImage render(panel::ColorScheme scheme) override { return rig_.render(header_, scheme); }

private:
    SceneRig rig_;
    ui::PanelHeader header_;
};

// Every card of the registry at every size it supports, packed on the grid in registry order.
class AllSizesStage : public SceneStage {
public:
    AllSizesStage() : rig_(MetricsFixture::normal) {
        rig_.model().setWeather(sceneWeather());
        canvas_.setObjectName(QStringLiteral("allSizes"));
        std::vector<layout::BentoPacker::Item> items;
        std::map<std::string, std::pair<std::string, layout::CardSize>> cards;
        for (const auto& kind : layout::OverviewCardRegistry::standard().all())
            for (auto size : kind.sizes) {
                const std::string key =
                    kind.id + "/" + std::string(settings::rawName(size, layout::CardSizeNames));
                items.push_back({key, kind.span(size)});
                cards[key] = {kind.id, size};
            }
        const auto packed = layout::BentoPacker::pack(items, layout::GridMetrics::columns);
        const int margin = ui::Metrics::margin;
        int height = 0;
        for (const auto& [key, grid] : packed.rects) {
            const auto r = layout::GridMetrics::points(grid);
            auto* card = new ui::CardView(cards[key].first, cards[key].second, rig_.model(),
                                          rig_.theme(), &canvas_);
            card->setGeometry(margin + int(r.x), margin + int(r.y), int(r.width), int(r.height));
            height = std::max(height, int(r.maxY()));
        }
        canvas_.setFixedSize(ui::Metrics::panelWidth, height + 2 * margin);
        canvas_.setAutoFillBackground(true);
        stageWidget(canvas_);
    }
    QImage render(panel::ColorScheme scheme) override {
        QPalette palette = canvas_.palette();
        rig_.theme().setPreference(scheme == panel::ColorScheme::dark
                                       ? settings::AppearancePreference::dark
                                       : settings::AppearancePreference::light);
        palette.setColor(QPalette::Window, rig_.theme().theme().palette().window);
        canvas_.setPalette(palette);
        return rig_.render(canvas_, scheme);
    }

private:
    SceneRig rig_;
    QWidget canvas_;
};

class PaintedStage : public SceneStage {
public:
    explicit PaintedStage(std::function<QImage(panel::ColorScheme)> paint)
        : paint_(std::move(paint)) {}
    QImage render(panel::ColorScheme scheme) override { return paint_(scheme); }

private:
    std::function<QImage(panel::ColorScheme)> paint_;
};

// The panel open under a desktop's top bar, as a user first meets it.
class HeroStage : public SceneStage {
public:
    HeroStage() : rig_(MetricsFixture::normal), window_(rig_.model(), rig_.theme()) {
        rig_.settings().weather().setShowInHeader(true);
        rig_.model().setWeather(sceneWeather(), sceneForecast(2));
        window_.header().setAnimating(false);
        stageWidget(window_);
    }
    QImage render(panel::ColorScheme scheme) override {
        const QImage panel = rig_.render(window_, scheme);
        return paintHero(panel, rig_.model(), scheme);
    }

private:
    SceneRig rig_;
    ui::PanelWindow window_;
};

mascot::MascotMood moodNamed(std::string_view name) {
    return *settings::fromRawName<mascot::MascotMood>(name, mascot::MascotMoodNames);
}

std::vector<Scene> buildScenes() {
    std::vector<Scene> scenes;
    for (std::size_t i = 0; i < metrics::MetricsFixtureNames.size(); ++i) {
        const auto fixture = MetricsFixture(i);
        scenes.push_back({"panel-overview-" + std::string(metrics::MetricsFixtureNames[i]),
                          [fixture] { return std::make_unique<PanelStage>(fixture); }});
    }
    scenes.push_back(
        {"panel-overview-all-sizes", [] { return std::make_unique<AllSizesStage>(); }});
    scenes.push_back({"panel-overview-reopened", [] { return std::make_unique<ReopenedStage>(); }});
    using Kind = updates::PanelNotice::Kind;
    for (auto [name, kind] : {std::pair{"panel-install-offer", Kind::installOffer},
                              std::pair{"panel-update-available", Kind::update},
                              std::pair{"panel-whats-new", Kind::whatsNew}})
        scenes.push_back(
            {name, [kind = kind] { return std::make_unique<NoticeStage>(sceneNotice(kind)); }});
    for (auto name : mascot::MascotMoodNames) {
        const auto mood = moodNamed(name);
        scenes.push_back({"panel-header-" + std::string(name), [mood] {
                              return std::make_unique<HeaderStage>(fixtureForMood(mood), mood);
                          }});
    }
    for (const auto& character : mascot::allCharacters()) {
        const std::string id = character.id;
        scenes.push_back(
            {"menubar-" + id, [id] {
                 return std::make_unique<PaintedStage>(
                     [id](panel::ColorScheme scheme) { return paintMenuBarStrip(id, scheme); });
             }});
    }
    // Each mascot's contact sheet: every loop and mood, the accessories, both sizes.
    for (const auto& character : mascot::allCharacters()) {
        const std::string id = character.id;
        scenes.push_back({"mascot-" + id, [id] {
                              return std::make_unique<PaintedStage>(
                                  [id](panel::ColorScheme scheme) {
                                      return mascot::renderMascotContactSheet(
                                          id, scheme == panel::ColorScheme::dark,
                                          qGuiApp ? qGuiApp->devicePixelRatio() : 2);
                                  });
                          }});
    }
    addShopScenes(scenes);
    addProcessScenes(scenes);
    scenes.push_back({"hero", [] { return std::make_unique<HeroStage>(); }});
    addSkyScenes(scenes);
    addSettingsScenes(scenes);
    addDetailScenes(scenes);
    addEditScenes(scenes);
    return scenes;
}

}  // namespace

const std::vector<Scene>& allScenes() {
    static const std::vector<Scene> scenes = buildScenes();
    return scenes;
}

std::vector<const Scene*> scenesMatching(const std::vector<std::string>& prefixes) {
    std::vector<const Scene*> matching;
    for (const auto& scene : allScenes()) {
        const bool match = prefixes.empty() ||
                           std::any_of(prefixes.begin(), prefixes.end(), [&](const std::string& p) {
                               return scene.name.rfind(p, 0) == 0;
                           });
        if (match) matching.push_back(&scene);
    }
    return matching;
}

}  // namespace trotlet::snapshot
