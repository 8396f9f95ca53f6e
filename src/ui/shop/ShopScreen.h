#pragma once

#include <QTimer>
#include <QWidget>

#include <optional>
#include <string>
#include <vector>

#include "shop/EconomyEngine.h"

class QScrollArea;
class QStackedWidget;
class QVBoxLayout;

namespace trotlet::shop {
class ShopRuntime;
}

namespace trotlet::ui {

class AchievementTileView;
class AchievementsTile;
class AdoptionSheet;
class CheckInCardView;
class GoldenFishTile;
class LedgerList;
class MascotCardView;
class MascotPreviews;
class ShopNoticeBanner;
class PanelModel;
class SectionTitle;
class ShopToast;
class ThemeStore;
class WalletCard;

// The Shop tab. Its main page has the notices, the wallet, the check-in, the Golden Fish and
// achievements tiles and the catalog; the achievements and the Fish history open as pages of
// their own (Escape or Alt+Left goes back). It reads the economy from the shop runtime and
// carries the user's actions to it; trying a mascot on goes out as a request, since the
// animator draws it.
class ShopScreen : public QWidget {
    Q_OBJECT
public:
    enum class Page { main, achievements, history };

    ShopScreen(PanelModel& model, shop::ShopRuntime& shop, const ThemeStore& theme,
               QWidget* parent = nullptr);
    ~ShopScreen() override;

    Page page() const { return page_; }
    // Stops or allows the previews' frame clock (still frames for screenshots).
    void setAnimating(bool animating);
    void showPage(Page page);
    // Reads the economy again; views repaint only where their content changed.
    void refresh();

    // The parts, for tests and scenes.
    WalletCard& wallet() const { return *wallet_; }
    CheckInCardView& checkIn() const { return *checkIn_; }
    GoldenFishTile& goldenFishTile() const { return *fishTile_; }
    AchievementsTile& achievementsTile() const { return *achievementsTile_; }
    SectionTitle& catalogTitle() const { return *catalogTitle_; }
    MascotCardView* mascotCard(const std::string& id) const;
    const std::vector<ShopNoticeBanner*>& banners() const { return banners_; }
    LedgerList& ledger() const { return *ledger_; }
    AdoptionSheet& welcome() const { return *sheet_; }
    MascotPreviews& previews() const { return *previews_; }
    QScrollArea& mainScroll() const { return *mainScroll_; }
    QString toastText() const;
    // The mascot being tried on: the drawn one when it isn't the equipped one.
    std::optional<std::string> tryingOn() const;

    QSize sizeHint() const override;

signals:
    void tryOnRequested(const QString& mascotId);
    void tryOnStopped();

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    QScrollArea* makeScroll(QWidget* content);
    void buildMain();
    void buildAchievements();
    void buildHistory();
    void refreshBanners();
    void updateTabOrder();
    void refreshPages();
    void updateAnimation();
    void collect();
    void buy(const std::string& id);
    void equip(const std::string& id);
    void catchFromKeyboard();
    void onMoment(const shop::EconomyMoment& moment);

    PanelModel& model_;
    shop::ShopRuntime& shop_;
    const ThemeStore& theme_;
    MascotPreviews* previews_ = nullptr;
    QStackedWidget* pages_ = nullptr;
    QScrollArea* mainScroll_ = nullptr;
    QScrollArea* achievementsScroll_ = nullptr;
    QScrollArea* historyScroll_ = nullptr;
    QVBoxLayout* bannerColumn_ = nullptr;
    std::vector<ShopNoticeBanner*> banners_;
    WalletCard* wallet_ = nullptr;
    CheckInCardView* checkIn_ = nullptr;
    GoldenFishTile* fishTile_ = nullptr;
    AchievementsTile* achievementsTile_ = nullptr;
    SectionTitle* catalogTitle_ = nullptr;
    std::vector<MascotCardView*> cards_;
    SectionTitle* achievementsSummary_ = nullptr;
    std::vector<AchievementTileView*> achievementTiles_;
    LedgerList* ledger_ = nullptr;
    AdoptionSheet* sheet_ = nullptr;
    ShopToast* toast_ = nullptr;
    Page page_ = Page::main;
    bool wantAnimation_ = true;
    // Moments raised by the user's own action, collected while it runs.
    std::optional<std::vector<shop::EconomyMoment>> capturing_;
};

}  // namespace trotlet::ui
