#include "ui/shop/ShopScreen.h"

#include <QGridLayout>
#include <QKeyEvent>
#include <QPainter>
#include <QScrollArea>
#include <QScrollBar>
#include <QStackedWidget>
#include <QVBoxLayout>

#include "shop/ShopScreenContent.h"
#include "shop/qt/ShopRuntime.h"
#include "ui/panel/PanelModel.h"
#include "ui/panel/ScrollIndicator.h"
#include "ui/shop/AchievementTileView.h"
#include "ui/shop/AdoptionSheet.h"
#include "ui/shop/CheckInCardView.h"
#include "ui/shop/LedgerList.h"
#include "ui/shop/MascotCardView.h"
#include "ui/shop/MascotPreviews.h"
#include "ui/shop/ShopButton.h"
#include "ui/shop/ShopMetrics.h"
#include "ui/shop/ShopNoticeBanner.h"
#include "ui/shop/ShopPaint.h"
#include "ui/shop/ShopSection.h"
#include "ui/shop/ShopTiles.h"
#include "ui/shop/WalletCard.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {

using shoppaint::qs;

// A short line over the bottom of the Shop: an achievement unlocked, a catch made from the
// keyboard. It lets clicks through and leaves on its own.
class ShopToast : public QWidget {
public:
    ShopToast(const ThemeStore& theme, QWidget* parent) : QWidget(parent), theme_(theme) {
        setAttribute(Qt::WA_TransparentForMouseEvents);
        timer_.setSingleShot(true);
        timer_.setInterval(ShopMetrics::toastMs);
        connect(&timer_, &QTimer::timeout, this, &QWidget::hide);
        hide();
    }
    void present(const QString& text, std::string symbol) {
        text_ = text;
        symbol_ = std::move(symbol);
        setAccessibleName(text);
        const QFontMetricsF fm(theme_.theme().type().label);
        const int w =
            std::min(Metrics::gridWidth, int(fm.horizontalAdvance(text)) +
                                             3 * Metrics::spacingLarge + Metrics::iconSize);
        const int h = ShopMetrics::buttonHeight + Metrics::spacing;
        setGeometry((parentWidget()->width() - w) / 2,
                    parentWidget()->height() - h - Metrics::margin, w, h);
        raise();
        show();
        update();
        timer_.start();
    }
    const QString& text() const { return text_; }

protected:
    void paintEvent(QPaintEvent*) override {
        const Palette& pal = theme_.theme().palette();
        QPainter p(this);
        p.setRenderHint(QPainter::Antialiasing);
        const QRectF box = QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5);
        p.setPen(Qt::NoPen);
        p.setBrush(pal.text);
        p.drawRoundedRect(box, box.height() / 2, box.height() / 2);
        const qreal icon = Metrics::iconSize;
        const qreal x = box.left() + Metrics::spacingLarge;
        Icons::paint(p, QRectF(x, box.center().y() - icon / 2, icon, icon), symbol_,
                     shoppaint::gold(pal));
        p.setFont(theme_.theme().type().label);
        p.setPen(pal.window);
        p.drawText(
            box.adjusted(x + icon + Metrics::spacing - box.left(), 0, -Metrics::spacingLarge, 0),
            Qt::AlignLeft | Qt::AlignVCenter, text_);
    }

private:
    const ThemeStore& theme_;
    QTimer timer_;
    QString text_;
    std::string symbol_;
};

ShopScreen::ShopScreen(PanelModel& model, shop::ShopRuntime& shop, const ThemeStore& theme,
                       QWidget* parent)
    : QWidget(parent), model_(model), shop_(shop), theme_(theme) {
    setObjectName(QStringLiteral("shop"));
    setAccessibleName(QStringLiteral("Shop"));
    previews_ = new MascotPreviews(this);
    pages_ = new QStackedWidget(this);
    auto* column = new QVBoxLayout(this);
    column->setContentsMargins(0, 0, 0, 0);
    column->addWidget(pages_);
    buildMain();
    sheet_ = new AdoptionSheet(*previews_, theme_, this);
    connect(sheet_, &AdoptionSheet::equipRequested, this, &ShopScreen::equip);
    connect(sheet_, &AdoptionSheet::closed, this, [this] {
        // "Later" after trying the newcomer on: back to the one the user kept.
        if (tryingOn() == sheet_->mascotId()) emit tryOnStopped();
        if (MascotCardView* card = mascotCard(sheet_->mascotId()))
            card->setFocus(Qt::OtherFocusReason);
    });
    toast_ = new ShopToast(theme_, this);

    connect(&shop_, &shop::ShopRuntime::changed, this, [this] {
        if (isVisible()) refresh();
    });
    connect(&shop_, &shop::ShopRuntime::goldenFishChanged, this, [this] {
        if (isVisible()) refresh();
    });
    connect(&shop_, &shop::ShopRuntime::momentRaised, this, &ShopScreen::onMoment);
    connect(&model_, &PanelModel::mascotChanged, this, [this] {
        if (isVisible()) refresh();
    });
    connect(&model_, &PanelModel::reduceMotionChanged, this, &ShopScreen::updateAnimation);
    refresh();
}

ShopScreen::~ShopScreen() = default;

QSize ShopScreen::sizeHint() const {
    // Tall enough to take the panel to its full height: the catalog alone is longer.
    return QSize(Metrics::panelWidth, Metrics::maxPanelHeight);
}

QScrollArea* ShopScreen::makeScroll(QWidget* content) {
    auto* scroll = new QScrollArea(pages_);
    scroll->setFrameShape(QFrame::NoFrame);
    scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    scroll->setWidgetResizable(true);
    scroll->viewport()->setAutoFillBackground(false);
    content->setAutoFillBackground(false);
    scroll->setWidget(content);
    new ScrollIndicator(*scroll, theme_);
    pages_->addWidget(scroll);
    return scroll;
}

void ShopScreen::buildMain() {
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(Metrics::margin, 0, Metrics::margin, Metrics::margin);
    column->setSpacing(Metrics::spacingLarge);
    bannerColumn_ = new QVBoxLayout;
    bannerColumn_->setSpacing(Metrics::spacing);
    column->addLayout(bannerColumn_);

    wallet_ = new WalletCard(theme_);
    connect(wallet_, &WalletCard::historyRequested, this, [this] { showPage(Page::history); });
    column->addWidget(wallet_);
    checkIn_ = new CheckInCardView(theme_);
    connect(checkIn_, &CheckInCardView::collectRequested, this, &ShopScreen::collect);
    column->addWidget(checkIn_);

    auto* tiles = new QHBoxLayout;
    tiles->setSpacing(Metrics::gap);
    fishTile_ = new GoldenFishTile(theme_);
    connect(fishTile_, &GoldenFishTile::catchRequested, this, &ShopScreen::catchFromKeyboard);
    achievementsTile_ = new AchievementsTile(theme_);
    connect(achievementsTile_, &AchievementsTile::clicked, this,
            [this] { showPage(Page::achievements); });
    tiles->addWidget(fishTile_);
    tiles->addWidget(achievementsTile_);
    column->addLayout(tiles);

    catalogTitle_ = new SectionTitle(QStringLiteral("Mascots"), theme_);
    column->addWidget(catalogTitle_);
    for (const auto& item : shop::Catalog::all()) {
        auto* card = new MascotCardView(*previews_, theme_);
        card->setObjectName(QStringLiteral("shop.mascot.") + qs(item.id));
        connect(card, &MascotCardView::buyRequested, this, &ShopScreen::buy);
        connect(card, &MascotCardView::equipRequested, this, &ShopScreen::equip);
        connect(card, &MascotCardView::tryOnRequested, this,
                [this](const std::string& id) { emit tryOnRequested(qs(id)); });
        connect(card, &MascotCardView::tryOnStopped, this, &ShopScreen::tryOnStopped);
        cards_.push_back(card);
        column->addWidget(card);
    }
    column->addStretch(1);
    mainScroll_ = makeScroll(content);
    mainScroll_->setObjectName(QStringLiteral("shop.main"));
    updateTabOrder();
}

void ShopScreen::buildAchievements() {
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(Metrics::margin, 0, Metrics::margin, Metrics::margin);
    column->setSpacing(Metrics::spacing);
    auto* header = new PageHeader(QStringLiteral("Achievements"), theme_);
    connect(header, &PageHeader::backRequested, this, [this] { showPage(Page::main); });
    column->addWidget(header);
    achievementsSummary_ = new SectionTitle(QString(), theme_);
    column->addWidget(achievementsSummary_);
    auto* grid = new QGridLayout;
    grid->setSpacing(Metrics::gap);
    for (std::size_t i = 0; i < shop::Achievement::all().size(); ++i) {
        auto* tile = new AchievementTileView(theme_);
        achievementTiles_.push_back(tile);
        grid->addWidget(tile, int(i / 2), int(i % 2));
    }
    column->addLayout(grid);
    column->addStretch(1);
    achievementsScroll_ = makeScroll(content);
    achievementsScroll_->setObjectName(QStringLiteral("shop.achievementsPage"));
}

void ShopScreen::buildHistory() {
    auto* content = new QWidget;
    auto* column = new QVBoxLayout(content);
    column->setContentsMargins(Metrics::margin, 0, Metrics::margin, Metrics::margin);
    column->setSpacing(0);
    auto* header = new PageHeader(QStringLiteral("Fish history"), theme_);
    connect(header, &PageHeader::backRequested, this, [this] { showPage(Page::main); });
    column->addWidget(header);
    ledger_ = new LedgerList(theme_);
    column->addWidget(ledger_);
    column->addStretch(1);
    historyScroll_ = makeScroll(content);
    historyScroll_->setObjectName(QStringLiteral("shop.historyPage"));
    ledger_->setScrollArea(historyScroll_);
}

void ShopScreen::showPage(Page page) {
    if (page == Page::achievements && !achievementsScroll_) buildAchievements();
    if (page == Page::history && !historyScroll_) buildHistory();
    const Page before = page_;
    page_ = page;
    refreshPages();
    switch (page) {
        case Page::main:
            pages_->setCurrentWidget(mainScroll_);
            if (before == Page::history) wallet_->historyButton().setFocus(Qt::OtherFocusReason);
            if (before == Page::achievements) achievementsTile_->setFocus(Qt::OtherFocusReason);
            break;
        case Page::achievements:
            achievementsScroll_->verticalScrollBar()->setValue(0);
            pages_->setCurrentWidget(achievementsScroll_);
            achievementTiles_.front()->setFocus(Qt::OtherFocusReason);
            break;
        case Page::history:
            historyScroll_->verticalScrollBar()->setValue(0);
            pages_->setCurrentWidget(historyScroll_);
            ledger_->setFocus(Qt::OtherFocusReason);
            break;
    }
}

MascotCardView* ShopScreen::mascotCard(const std::string& id) const {
    for (MascotCardView* card : cards_)
        if (card->content().id == id) return card;
    return nullptr;
}

std::optional<std::string> ShopScreen::tryingOn() const {
    const std::string& drawn = model_.mascotId();
    if (drawn == shop_.engine().inventory().equipped()) return std::nullopt;
    return drawn;
}

QString ShopScreen::toastText() const { return toast_->isVisible() ? toast_->text() : QString(); }

void ShopScreen::refresh() {
    const shop::EconomyEngine& engine = shop_.engine();
    refreshBanners();
    wallet_->setContent(shop::describeWallet(engine));
    checkIn_->setContent(shop::describeCheckIn(engine));
    fishTile_->setContent(shop::describeGoldenFish(engine));
    achievementsTile_->setSummary(shop::summarizeAchievements(engine.achievements()));
    const auto catalog = shop::describeCatalog(engine, tryingOn());
    for (std::size_t i = 0; i < catalog.size() && i < cards_.size(); ++i)
        cards_[i]->setContent(catalog[i]);
    catalogTitle_->setFact(qs(shop::ownedSummary(engine.inventory())));
    refreshPages();
}

void ShopScreen::refreshPages() {
    const shop::EconomyEngine& engine = shop_.engine();
    if (page_ == Page::achievements && achievementsScroll_) {
        const auto summary = shop::summarizeAchievements(engine.achievements());
        achievementsSummary_->setFact(qs(summary.reward));
        const auto tiles =
            shop::describeAchievements(engine.achievements(), engine.wallet().ledger());
        for (std::size_t i = 0; i < tiles.size() && i < achievementTiles_.size(); ++i)
            achievementTiles_[i]->setContent(tiles[i]);
        achievementsSummary_->setTitle(qs(summary.count + " unlocked"));
    }
    if (page_ == Page::history && historyScroll_)
        ledger_->setSections(
            shop::describeLedger(engine.wallet().ledger(), engine.calendar(), engine.trustedNow()));
}

void ShopScreen::refreshBanners() {
    const auto wanted =
        shop::describeBanners(shop_.engine().notices().pending(), shop_.engine().clockStatus());
    bool same = wanted.size() == banners_.size();
    for (std::size_t i = 0; same && i < wanted.size(); ++i)
        same = wanted[i] == banners_[i]->banner();
    if (same) return;
    for (ShopNoticeBanner* banner : banners_) banner->deleteLater();
    banners_.clear();
    for (const auto& b : wanted) {
        auto* banner = new ShopNoticeBanner(b, theme_);
        connect(banner, &ShopNoticeBanner::dismissed, this, [this](shop::ShopNotice::Kind kind) {
            // The focus would vanish with the banner: it moves to the wallet below.
            wallet_->historyButton().setFocus(Qt::OtherFocusReason);
            shop_.dismissNotice(kind);
            refresh();
        });
        banners_.push_back(banner);
        bannerColumn_->addWidget(banner);
    }
    updateTabOrder();
}

void ShopScreen::updateTabOrder() {
    // Reading order, top to bottom and left to right. Set outright: widgets built before they
    // had their parent join the focus chain wherever they were reparented.
    std::vector<QWidget*> order;
    for (ShopNoticeBanner* banner : banners_) order.push_back(&banner->dismissButton());
    order.insert(order.end(),
                 {&wallet_->historyButton(), &wallet_->explainerButton(),
                  &checkIn_->collectButton(), &fishTile_->catchButton(), achievementsTile_});
    for (MascotCardView* card : cards_) {
        order.push_back(&card->secondaryButton());
        order.push_back(&card->primaryButton());
    }
    QWidget* before = mainScroll_;
    for (QWidget* w : order) {
        setTabOrder(before, w);
        before = w;
    }
}

void ShopScreen::collect() {
    capturing_.emplace();
    const shop::CheckInOutcome outcome = shop_.checkIn();
    const std::vector<shop::EconomyMoment> moments = std::move(*capturing_);
    capturing_.reset();
    checkIn_->setNote(shop::describeCollect(outcome, moments, shop_.engine().calendar()));
    refresh();
    for (const auto& m : moments)
        if (m.kind == shop::EconomyMoment::Kind::mascotEarned) {
            const bool equipped = shop_.engine().inventory().equipped() == m.id;
            sheet_->present(m.id, true, equipped);
        }
}

void ShopScreen::buy(const std::string& id) {
    const shop::PurchaseResult result = shop_.buy(id);
    refresh();
    // Any other answer leaves the card as the refresh shows it (bought elsewhere, or short).
    if (result.kind == shop::PurchaseResult::Kind::bought) sheet_->present(id, false, false);
}

void ShopScreen::equip(const std::string& id) {
    if (shop_.equip(id) && tryingOn()) emit tryOnStopped();
    refresh();
}

void ShopScreen::catchFromKeyboard() {
    const auto& fish = shop_.engine().activeGoldenFish();
    if (!fish) return;
    const shop::CatchResult result = shop_.catchGoldenFish(fish->id);
    const std::string reaction = shop::catchReaction(result);
    if (!reaction.empty())
        toast_->present(result.kind == shop::CatchResult::Kind::caught
                            ? qs(reaction) + QStringLiteral(" Fish")
                            : qs(reaction),
                        "fish.fill");
    refresh();
}

void ShopScreen::onMoment(const shop::EconomyMoment& moment) {
    if (capturing_) capturing_->push_back(moment);
    // Notifications hold still while the panel is open, so the Shop says it itself.
    if (moment.kind == shop::EconomyMoment::Kind::achievementUnlocked && isVisible()) {
        if (const auto id = shop::Achievement::idNamed(moment.id)) {
            const auto& a = shop::Achievement::of(*id);
            toast_->present(qs(moment.text + " " + shop::signedFish(a.reward)), "trophy.fill");
        }
    }
}

void ShopScreen::setAnimating(bool animating) {
    wantAnimation_ = animating;
    updateAnimation();
}

void ShopScreen::updateAnimation() {
    previews_->setRunning(wantAnimation_ && isVisible() && !model_.reduceMotion());
}

void ShopScreen::keyPressEvent(QKeyEvent* event) {
    const auto mods = event->modifiers() & ~Qt::KeypadModifier;
    const bool back =
        event->key() == Qt::Key_Escape || (mods == Qt::AltModifier && event->key() == Qt::Key_Left);
    if (back && page_ != Page::main) {
        showPage(Page::main);
        return;
    }
    QWidget::keyPressEvent(event);
}

void ShopScreen::showEvent(QShowEvent*) {
    refresh();
    updateAnimation();
}

void ShopScreen::hideEvent(QHideEvent*) {
    updateAnimation();
    // What a collect said is told once: the next open starts clean.
    if (!window()->isVisible()) {
        checkIn_->setNote({});
        for (MascotCardView* card : cards_) card->setConfirming(false);
    }
}

void ShopScreen::resizeEvent(QResizeEvent*) {
    if (sheet_->isVisible()) sheet_->setGeometry(rect());
}

}  // namespace trotlet::ui
