#include "snapshot/ShopScenes.h"

#include <QApplication>
#include <QLayout>
#include <QScrollArea>
#include <QScrollBar>

#include <functional>
#include <memory>

#include "mascot/MascotCharacter.h"
#include "shop/Calendar.h"
#include "shop/Catalog.h"
#include "shop/ShopDemoStates.h"
#include "shop/ShopPersistence.h"
#include "shop/qt/ShopRuntime.h"
#include "snapshot/SceneRig.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"
#include "ui/shop/GoldenFishView.h"
#include "ui/shop/MascotCardView.h"
#include "ui/shop/ShopButton.h"
#include "ui/shop/ShopInstall.h"
#include "ui/shop/ShopScreen.h"
#include "ui/shop/ShopSection.h"

namespace trotlet::snapshot {
namespace {

using shop::ShopDemo;

// The scenes' moment on the economy's clock, and Berlin's summer offset to match their zone.
shop::Timestamp shopSceneTime() {
    return std::chrono::duration<double>(sceneTime().time_since_epoch()).count();
}
constexpr long sceneOffsetSeconds = 2 * 3600;

// A shop in memory in a demo state, on a clock that stands still at the scenes' moment.
std::unique_ptr<shop::ShopRuntime> demoShop(ShopDemo demo, shop::ManualClock** clock) {
    shop::ShopRuntime::Parts parts;
    auto manual = std::make_unique<shop::ManualClock>(shopSceneTime(), "scene-boot");
    *clock = manual.get();
    parts.clock = std::move(manual);
    parts.calendar = std::make_unique<shop::FixedOffsetCalendar>(sceneOffsetSeconds);
    shop::ManualClock* c = *clock;
    parts.persistence = std::make_unique<shop::InMemoryShopPersistence>(
        *parts.calendar, [c] { return c->wall(); }, 7, shop::buildShopDemo(demo, shopSceneTime()));
    shop::ShopRuntime::Options options;
    options.seed = 7;
    return std::make_unique<shop::ShopRuntime>(std::move(parts), options);
}

// The model shows what the live app would feed it: the equipped mascot and the balance.
void feedModel(ui::PanelModel& model, const shop::ShopRuntime& shop,
               const std::string& drawn = {}) {
    const auto& engine = shop.engine();
    const std::string id = drawn.empty() ? engine.inventory().equipped() : drawn;
    model.setMascot(id, model.mascotVisual(), 12);
    if (const auto* item = shop::Catalog::item(id)) model.setMascotName(item->name);
    model.setFishBalance(engine.wallet().balance());
}

class ShopStage : public SceneStage {
public:
    using Setup = std::function<void(ShopStage&)>;

    ShopStage(ShopDemo demo, const Setup& setup)
        : rig_(metrics::MetricsFixture::normal),
          shop_(demoShop(demo, &clock_)),
          window_(rig_.model(), rig_.theme()) {
        shop_->setPanelOpen(true);
        ui::installShop(window_, rig_.model(), *shop_, rig_.theme(), [this](ui::ShopScreen& built) {
            screen_ = &built;
            screen_->setAnimating(false);
        });
        window_.header().setAnimating(false);
        feedModel(rig_.model(), *shop_);
        window_.showTab(panel::PanelTab::shop);
        window_.setAttribute(Qt::WA_DontShowOnScreen);
        window_.show();
        if (setup) setup(*this);
        screen_->refresh();
        settle();
    }
    QImage render(panel::ColorScheme scheme) override { return rig_.render(window_, scheme); }

    SceneRig& rig() { return rig_; }
    shop::ShopRuntime& shop() { return *shop_; }
    shop::ManualClock& clock() { return *clock_; }
    ui::ShopScreen& screen() { return *screen_; }
    // Runs the layouts that the changes above asked for, so the first render is complete.
    void settle() {
        for (QWidget* page : screen_->findChildren<QWidget*>())
            if (page->layout()) page->layout()->activate();
        QApplication::processEvents();
    }
    // Scrolls the main page so a widget sits a little below its top.
    void scrollTo(QWidget* widget) {
        settle();
        const int y = widget->mapTo(screen_->mainScroll().widget(), QPoint(0, 0)).y();
        screen_->mainScroll().verticalScrollBar()->setValue(y - ui::Metrics::spacing);
    }

private:
    SceneRig rig_;
    shop::ManualClock* clock_ = nullptr;
    std::unique_ptr<shop::ShopRuntime> shop_;
    ui::PanelWindow window_;
    ui::ShopScreen* screen_ = nullptr;
};

// The header alone with a Golden Fish halfway across.
class GoldenFishStage : public SceneStage {
public:
    GoldenFishStage()
        : rig_(metrics::MetricsFixture::normal), shop_(demoShop(ShopDemo::midGame, &clock_)) {
        feedModel(rig_.model(), *shop_);
        header_ = std::make_unique<ui::PanelHeader>(rig_.model(), rig_.theme());
        header_->setFixedWidth(ui::Metrics::panelWidth);
        header_->setAnimating(false);
        fish_ = new ui::GoldenFishView(*shop_, rig_.model(), rig_.theme(), header_.get());
        shop_->engine().spawnGoldenFish(clock_->wall());
        clock_->advance(1.5);
        emit shop_->goldenFishChanged();
        header_->setAttribute(Qt::WA_DontShowOnScreen);
        header_->show();
        fish_->step();
    }
    QImage render(panel::ColorScheme scheme) override { return rig_.render(*header_, scheme); }

private:
    SceneRig rig_;
    shop::ManualClock* clock_ = nullptr;
    std::unique_ptr<shop::ShopRuntime> shop_;
    std::unique_ptr<ui::PanelHeader> header_;
    ui::GoldenFishView* fish_ = nullptr;
};

void add(std::vector<Scene>& scenes, std::string name, ShopDemo demo, ShopStage::Setup setup = {}) {
    scenes.push_back(
        {std::move(name), [demo, setup] { return std::make_unique<ShopStage>(demo, setup); }});
}

}  // namespace

void addShopScenes(std::vector<Scene>& scenes) {
    for (std::size_t i = 0; i < shop::ShopDemoNames.size(); ++i)
        add(scenes, "panel-shop-" + std::string(shop::ShopDemoNames[i]), ShopDemo(i));
    add(scenes, "panel-shop-catalog", ShopDemo::midGame, [](ShopStage& s) {
        // Trying the penguin on, and about to buy it.
        feedModel(s.rig().model(), s.shop(), "penguin");
        s.screen().refresh();
        s.screen().mascotCard("penguin")->setConfirming(true);
        s.scrollTo(&s.screen().catalogTitle());
    });
    add(scenes, "panel-shop-catalog-end", ShopDemo::rich, [](ShopStage& s) {
        // The end of the catalog: the legendaries, Maneki's perk and the secret.
        s.scrollTo(s.screen().mascotCard("unicorn"));
    });
    add(scenes, "panel-shop-achievements", ShopDemo::midGame,
        [](ShopStage& s) { s.screen().showPage(ui::ShopScreen::Page::achievements); });
    add(scenes, "panel-shop-ledger", ShopDemo::midGame,
        [](ShopStage& s) { s.screen().showPage(ui::ShopScreen::Page::history); });
    add(scenes, "panel-shop-notice-restored", ShopDemo::midGame, [](ShopStage& s) {
        shop::ShopNotice notice{shop::ShopNotice::Kind::restoredFromBackup};
        notice.fileName = "shop.corrupt-20261001-142210.json";
        s.shop().engine().notices().raise(notice);
    });
    add(scenes, "panel-shop-clock-behind", ShopDemo::midGame, [](ShopStage& s) {
        // The clock set back a day: the next look at it finds it behind.
        s.clock().shiftWall(-86400);
        s.shop().engine().observeClock();
    });
    add(scenes, "panel-shop-welcome", ShopDemo::rich, [](ShopStage& s) {
        // Just after adopting the unicorn.
        s.screen().mascotCard("unicorn")->setConfirming(true);
        s.screen().mascotCard("unicorn")->primaryButton().click();
        feedModel(s.rig().model(), s.shop());
    });
    scenes.push_back(
        {"panel-header-goldenfish", [] { return std::make_unique<GoldenFishStage>(); }});
}

}  // namespace trotlet::snapshot
