// The Shop tab through its real widgets, on an in-memory shop and a manual clock.
#include <gtest/gtest.h>

#include <QApplication>

#include "ui/tests/UiTestApp.h"
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollArea>

#include "mascot/qt/MascotAnimator.h"
#include "shop/ShopDemoStates.h"
#include "shop/ShopPersistence.h"
#include "shop/ShopScreenContent.h"
#include "shop/qt/ShopRuntime.h"
#include "snapshot/SceneRig.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"
#include "ui/shop/AdoptionSheet.h"
#include "ui/shop/CheckInCardView.h"
#include "ui/shop/GoldenFishView.h"
#include "ui/shop/LedgerList.h"
#include "ui/shop/MascotCardView.h"
#include "ui/shop/MascotPreviews.h"
#include "ui/shop/ShopButton.h"
#include "ui/shop/ShopInstall.h"
#include "ui/shop/ShopNoticeBanner.h"
#include "ui/shop/ShopScreen.h"
#include "ui/shop/ShopTiles.h"
#include "ui/shop/WalletCard.h"
#include "ui/theme/Icons.h"

namespace trotlet::ui {
namespace {

constexpr shop::Timestamp start = 1790845200.0;  // 2026-10-01T09:00:00Z

struct ShopScreenTest : ::testing::Test {
    snapshot::SceneRig rig{(application(), metrics::MetricsFixture::normal)};
    shop::ManualClock* clock = nullptr;
    std::unique_ptr<shop::ShopRuntime> shop;
    std::unique_ptr<PanelWindow> window;
    ShopScreen* screen = nullptr;

    void open(shop::ShopState state) {
        shop::ShopRuntime::Parts parts;
        auto manual = std::make_unique<shop::ManualClock>(start);
        clock = manual.get();
        parts.clock = std::move(manual);
        parts.calendar = std::make_unique<shop::FixedOffsetCalendar>(0);
        parts.persistence = std::make_unique<shop::InMemoryShopPersistence>(
            *parts.calendar, [c = clock] { return c->wall(); }, 3, std::move(state));
        shop = std::make_unique<shop::ShopRuntime>(std::move(parts), shop::ShopRuntime::Options{});
        shop->setPanelOpen(true);
        window = std::make_unique<PanelWindow>(rig.model(), rig.theme());
        window->header().setAnimating(false);
        installShop(*window, rig.model(), *shop, rig.theme(),
                    [this](ShopScreen& built) { screen = &built; });
        window->showTab(panel::PanelTab::shop);
        window->show();
        QApplication::setActiveWindow(window.get());
    }
    void openWith(int64_t fish) {
        open(shop::ShopState::fresh(start, 1));
        shop->engine().grantDebugFish(fish, "test");
    }
    int saves() {
        return static_cast<shop::InMemoryShopPersistence&>(shop->persistence()).saveCount();
    }
    MascotCardView& card(const char* id) { return *screen->mascotCard(id); }
    void press(QWidget* target, int key) {
        QKeyEvent down(QEvent::KeyPress, key, Qt::NoModifier);
        QApplication::sendEvent(target, &down);
    }
    void click(QWidget* target, QPointF at) {
        QMouseEvent down(QEvent::MouseButtonPress, at, target->mapToGlobal(at), Qt::LeftButton,
                         Qt::LeftButton, Qt::NoModifier);
        QApplication::sendEvent(target, &down);
    }
};

TEST_F(ShopScreenTest, BuyingAsksFirstPaysAtOnceAndWelcomesTheNewcomer) {
    openWith(249);
    EXPECT_FALSE(card("shiba").primaryButton().isVisibleTo(&card("shiba")));
    EXPECT_EQ(card("shiba").content().note, "1 more Fish");

    shop->engine().grantDebugFish(1, "test");
    ShopButton& buy = card("shiba").primaryButton();
    ASSERT_TRUE(buy.isVisibleTo(&card("shiba")));
    EXPECT_EQ(buy.text(), "Buy");
    buy.click();
    EXPECT_TRUE(card("shiba").isConfirming());
    EXPECT_EQ(shop->engine().wallet().balance(), 250) << "nothing is spent before the answer";
    const int savesBefore = saves();
    card("shiba").primaryButton().click();  // "Adopt"
    EXPECT_EQ(shop->engine().wallet().balance(), 0);
    EXPECT_TRUE(shop->engine().inventory().owns("shiba"));
    EXPECT_EQ(saves(), savesBefore + 1) << "written before the click returns";

    ASSERT_TRUE(screen->welcome().isVisible());
    EXPECT_EQ(screen->welcome().accessibleName(), "Welcome home, Kibo");
    screen->welcome().equipButton().click();
    EXPECT_EQ(shop->engine().inventory().equipped(), "shiba");
    EXPECT_EQ(card("shiba").content().note, "Equipped");
    EXPECT_EQ(card("cat").primaryButton().text(), "Equip");
}

TEST_F(ShopScreenTest, TheLegendIsNeverForSale) {
    openWith(1000000);
    MascotCardView& legend = card("goldenCat");
    EXPECT_TRUE(legend.content().secret);
    EXPECT_FALSE(legend.primaryButton().isVisibleTo(&legend));
    EXPECT_FALSE(legend.secondaryButton().isVisibleTo(&legend)) << "no try-on either";
    EXPECT_EQ(legend.content().highlight, "A secret. Keep your streak going.");
}

TEST_F(ShopScreenTest, ATryOnReturnsToTheEquippedMascotAfterItsTime) {
    openWith(0);
    double now = 100;
    mascot::MascotAnimator animator;
    animator.setClock(
        [&] { return mascot::Timestamp(std::chrono::milliseconds(std::llround(now * 1000))); });
    animator.equip("cat");
    // As the live app wires it.
    QObject::connect(screen, &ShopScreen::tryOnRequested, [&](const QString& id) {
        animator.tryOn(id.toStdString(), mascot::Timestamp(std::chrono::milliseconds(
                                             std::llround((now + shop::tryOnSeconds) * 1000))));
    });
    QObject::connect(&animator, &mascot::MascotAnimator::drawnMascotChanged, [&] {
        rig.model().setMascot(animator.drawnMascotId(), animator.visual(), 8);
    });

    ASSERT_EQ(card("fox").secondaryButton().text(), "Try on");
    card("fox").secondaryButton().click();
    EXPECT_EQ(animator.drawnMascotId(), "fox");
    EXPECT_EQ(rig.model().mascotId(), "fox") << "the header shows it too";
    EXPECT_TRUE(card("fox").content().tryingOn);
    EXPECT_EQ(card("fox").secondaryButton().text(), "Stop");

    now += 29.9;
    animator.advance(mascot::Timestamp(std::chrono::milliseconds(std::llround(now * 1000))));
    EXPECT_EQ(animator.drawnMascotId(), "fox");
    now += 0.1;
    animator.advance(mascot::Timestamp(std::chrono::milliseconds(std::llround(now * 1000))));
    EXPECT_EQ(animator.drawnMascotId(), "cat");
    EXPECT_EQ(rig.model().mascotId(), "cat");
    EXPECT_FALSE(card("fox").content().tryingOn);
}

TEST_F(ShopScreenTest, AGoldenFishClickedAtFourPointSixPaysAndAtFourPointEightIsTooLate) {
    openWith(0);
    auto* fish = window->header().findChild<GoldenFishView*>();
    ASSERT_NE(fish, nullptr);
    // The fish was last drawn near the far edge; the click arrives later, on the economy's clock.
    auto swimAndClickAt = [&](double seconds) {
        shop->engine().spawnGoldenFish(clock->wall());
        emit shop->goldenFishChanged();
        clock->advance(3.5);
        fish->step();
        EXPECT_TRUE(fish->isVisible());
        const QPointF body = fish->bodyInHeader().center() - QPointF(fish->pos());
        clock->advance(seconds - 3.5);
        click(fish, body);
    };
    swimAndClickAt(4.6);
    EXPECT_EQ(shop->engine().wallet().balance(), 5);
    EXPECT_EQ(fish->reaction(), "+5");
    swimAndClickAt(4.8);
    EXPECT_EQ(shop->engine().wallet().balance(), 5);
    EXPECT_EQ(fish->reaction(), "Too late");
    EXPECT_EQ(shop->engine().lifetime().goldenFishMissed, 1);

    // With reduced motion the fish waits in one place, and still swims only its 4.2 s.
    rig.model().setReduceMotion(true);
    shop->engine().spawnGoldenFish(clock->wall());
    emit shop->goldenFishChanged();
    clock->advance(1);
    fish->step();
    const QPoint still = fish->pos();
    clock->advance(2);
    fish->step();
    EXPECT_EQ(fish->pos(), still);
    clock->advance(1.5);
    fish->step();
    EXPECT_FALSE(fish->isVisible());
}

TEST_F(ShopScreenTest, ANoticeShowsOnceAndGoesWhenDismissed) {
    openWith(0);
    shop::ShopNotice restored{shop::ShopNotice::Kind::restoredFromBackup};
    restored.fileName = "shop.corrupt-20261001-090000.json";
    shop->engine().notices().raise(restored);
    shop->engine().notices().raise(restored);
    shop->engine().notices().raise(
        {shop::ShopNotice::Kind::clockJumpedForward});  // the clock is fine
    screen->refresh();
    ASSERT_EQ(screen->banners().size(), 1u);
    EXPECT_EQ(screen->banners()[0]->dismissButton().objectName(), "shop.notice.dismiss");
    screen->banners()[0]->dismissButton().click();
    EXPECT_TRUE(screen->banners().empty());
    EXPECT_EQ(shop->engine().notices().pending().size(), 1u)
        << "only the clock's notice, not shown";
}

TEST_F(ShopScreenTest, CollectEarnsTheLegendAndTheKeyboardWalksThePages) {
    open(shop::buildShopDemo(shop::ShopDemo::streak29, start));
    const int64_t before = shop->engine().wallet().balance();
    ShopButton& collect = screen->checkIn().collectButton();
    collect.setFocus(Qt::TabFocusReason);
    press(&collect, Qt::Key_Return);
    EXPECT_EQ(shop->engine().wallet().balance(), before + 40 + 300)
        << "the check-in and Monthly Regular";
    EXPECT_EQ(screen->toastText(), "Achievement unlocked: Monthly Regular +300");
    EXPECT_EQ(screen->checkIn().note().headline, "+40 Fish, day 30 of your streak");
    EXPECT_FALSE(collect.isEnabled());
    ASSERT_TRUE(screen->welcome().isVisible());
    EXPECT_EQ(screen->welcome().mascotId(), "goldenCat");
    press(&screen->welcome().equipButton(), Qt::Key_Escape);
    EXPECT_FALSE(screen->welcome().isVisible());
    EXPECT_EQ(shop->engine().inventory().equipped(), "cat") << "later, not now";

    ShopButton& history = screen->wallet().historyButton();
    press(&history, Qt::Key_Return);
    ASSERT_EQ(screen->page(), ShopScreen::Page::history);
    EXPECT_TRUE(screen->ledger().hasFocus());
    EXPECT_GT(screen->ledger().rowCount(), 30);
    EXPECT_EQ(screen->ledger().currentRow(), 0);
    press(&screen->ledger(), Qt::Key_Down);
    EXPECT_EQ(screen->ledger().currentRow(), 1);
    press(&screen->ledger(), Qt::Key_Escape);
    EXPECT_EQ(screen->page(), ShopScreen::Page::main);
    EXPECT_TRUE(history.hasFocus());

    window->hide();
    window->show();
    EXPECT_TRUE(screen->checkIn().note().empty()) << "what a collect said is told once";
}

TEST_F(ShopScreenTest, EverySymbolTheShopNamesIsDrawn) {
    std::vector<std::string> symbols;
    for (const auto& a : shop::Achievement::all()) symbols.emplace_back(a.symbol);
    for (std::string_view kind : shop::LedgerReason::kindNames) {
        shop::LedgerEntry entry;
        if (kind == "achievement")
            entry.reason = shop::LedgerReason::achievement("marathon");
        else if (kind == "purchase")
            entry.reason = shop::LedgerReason::purchase("fox");
        else if (kind == "checkIn")
            entry.reason = shop::LedgerReason::checkIn(3);
        else if (kind == "debug")
            entry.reason = shop::LedgerReason::debug("x");
        else if (kind == "correction")
            entry.reason = shop::LedgerReason::correction("x");
        else if (kind == "welcomeGift")
            entry.reason = shop::LedgerReason::welcomeGift();
        else if (kind == "passive")
            entry.reason = shop::LedgerReason::passive();
        else if (kind == "goldenFish")
            entry.reason = shop::LedgerReason::goldenFish();
        symbols.push_back(shop::describeLedgerEntry(entry).symbol);
    }
    std::vector<shop::ShopNotice> all;
    for (int k = 0; k <= int(shop::ShopNotice::Kind::clockBehind); ++k)
        all.push_back({shop::ShopNotice::Kind(k)});
    for (const auto status :
         {shop::ClockStatus::Kind::behind, shop::ClockStatus::Kind::jumpedForward})
        for (const auto& b : shop::describeBanners(all, {status})) symbols.push_back(b.symbol);
    for (const auto& way : shop::howToEarn(1)) symbols.push_back(way.symbol);
    for (const char* id : {"maneki", "goldenCat"}) {
        const auto* item = shop::Catalog::item(id);
        symbols.push_back(
            describeCatalogItem(*item, {shop::ItemStatus::Kind::notForSale}, 0, 0, false)
                .highlightSymbol);
        symbols.push_back(describeCatalogItem(*item, {shop::ItemStatus::Kind::owned}, 0, 0, false)
                              .highlightSymbol);
    }
    for (const std::string& symbol : symbols)
        if (!symbol.empty()) {
            EXPECT_TRUE(Icons::has(symbol)) << symbol;
        }
}

TEST_F(ShopScreenTest, OnlyThePreviewsInViewMove) {
    openWith(0);
    window->resize(window->width(), Metrics::maxPanelHeight);
    QApplication::processEvents();
    screen->previews().tick();
    EXPECT_EQ(screen->previews().lastTickRepaints(), 0) << "the catalog starts below the fold";
    screen->mainScroll().ensureWidgetVisible(screen->mascotCard("fox"));
    QApplication::processEvents();
    screen->previews().tick();
    EXPECT_GT(screen->previews().lastTickRepaints(), 0);
    EXPECT_LT(screen->previews().lastTickRepaints(), 7);
    window->showTab(panel::PanelTab::overview);
    EXPECT_FALSE(screen->previews().isRunning());
}

TEST_F(ShopScreenTest, TheKeyboardReadsTheMainPageInOrder) {
    openWith(300);
    shop::ShopNotice restored{shop::ShopNotice::Kind::restoredFromBackup};
    restored.fileName = "shop.corrupt.json";
    shop->engine().notices().raise(restored);
    screen->refresh();
    QApplication::processEvents();  // the new banner shows on the next turn
    std::vector<QString> order;
    QWidget* w = &screen->banners()[0]->dismissButton();
    for (int i = 0; i < 8; ++i, w = w->nextInFocusChain()) {
        while (w->focusPolicy() == Qt::NoFocus || !w->isVisibleTo(window.get()))
            w = w->nextInFocusChain();
        order.push_back(w->objectName().isEmpty() ? w->accessibleName() : w->objectName());
    }
    const std::vector<QString> expected = {
        "shop.notice.dismiss", "shop.history", "shop.howToEarn", "shop.checkIn.collect",
        "shop.achievements",   "Try on Kibo",  "Buy Kibo",       "Try on Pudding"};
    EXPECT_EQ(order, expected);
}

TEST_F(ShopScreenTest, NoFishWhileGoldenFishAreOffAndNoPayBeyondTheDailyMax) {
    openWith(0);
    auto* fish = window->header().findChild<GoldenFishView*>();
    shop->setGoldenFishEnabled(false);
    shop->engine().spawnGoldenFish(clock->wall());
    emit shop->goldenFishChanged();
    clock->advance(1);
    fish->step();
    EXPECT_FALSE(fish->isVisible());
    EXPECT_EQ(screen->goldenFishTile().content().status, "Golden Fish are off");

    shop->setGoldenFishEnabled(true);
    for (int caught = 0; caught <= 3; ++caught) {
        shop->engine().spawnGoldenFish(clock->wall());
        emit shop->goldenFishChanged();
        clock->advance(2);
        fish->step();
        ASSERT_TRUE(fish->isVisible());
        click(fish, fish->bodyInHeader().center() - QPointF(fish->pos()));
    }
    EXPECT_EQ(fish->reaction(), "Daily max reached");
    EXPECT_EQ(shop->engine().wallet().balance(), 15);
}

}  // namespace
}  // namespace trotlet::ui
