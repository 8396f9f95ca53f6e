#include "app/qt/PanelHost.h"

#include <QApplication>
#include <QClipboard>
#include <QCoreApplication>
#include <QDateTime>
#include <QDesktopServices>
#include <QDir>
#include <QEvent>
#include <QKeyEvent>
#include <QLocale>
#include <QPalette>
#include <QUrl>

#include <cstdio>
#include <cstdlib>

#ifdef __GLIBC__
#include <malloc.h>
#endif

#include <unistd.h>

#include "app/qt/AppModel.h"
#include "app/qt/DebugLog.h"
#include "layout/LayoutStore.h"
#include "mascot/qt/MascotAnimator.h"
#include "metrics/qt/MetricsStore.h"
#include "panel/HeaderContent.h"
#include "panel/PanelTabs.h"
#include "platform/freedesktop/ColorScheme.h"
#include "platform/freedesktop/GlobalShortcut.h"
#include "platform/freedesktop/Notifications.h"
#include "platform/freedesktop/SessionProcesses.h"
#include "platform/linux/AccountName.h"
#include "platform/linux/LinuxProcessControl.h"
#include "platform/linux/XdgPaths.h"
#include "processes/SimulatedProcessControl.h"
#include "processes/qt/ProcessesController.h"
#include "reports/PawReport.h"
#include "reports/qt/PawReportView.h"
#include "settings/AppSettings.h"
#include "settings/RawEnum.h"
#include "shop/Catalog.h"
#include "shop/ShopScreenContent.h"
#include "shop/qt/ShopRuntime.h"
#include "ui/details/DetailView.h"
#include "ui/details/PublicAddressLookup.h"
#include "ui/onboarding/OnboardingView.h"
#include "ui/overview/OverviewView.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelModel.h"
#include "ui/panel/PanelWindow.h"
#include "ui/shop/ShopInstall.h"
#include "ui/shop/ShopScreen.h"
#include "ui/processes/ProcessesScreen.h"
#include "ui/settings/SettingsController.h"
#include "ui/settings/SettingsView.h"
#include "ui/theme/FontEngines.h"
#include "ui/theme/ThemeStore.h"
#include "updates/PanelNotice.h"
#include "updates/qt/InstallOfferStore.h"
#include "updates/qt/UpdateStore.h"
#include "updates/qt/UpdatesRuntime.h"
#include "updates/qt/WhatsNewStore.h"
#include "weather/WeatherText.h"
#include "weather/qt/WeatherRuntime.h"
#include "weather/qt/WeatherSearch.h"
#include "weather/qt/WeatherStore.h"

#include "BuildInfo.h"

namespace trotlet::app {
namespace {

constexpr int releaseAfterMs = 60 * 1000;
// The test notification's key: it replaces the previous test, never an alert.
constexpr const char* testNotificationKey = "trotlet.test";

bool perfLogging() {
    const char* value = std::getenv("TROTLET_PANEL_PERF");
    return value && *value && std::string_view(value) != "0";
}

}  // namespace

PanelHost::PanelHost(AppModel& model, settings::AppSettings& settings,
                     const cli::LaunchOptions& options, QObject* parent)
    : QObject(parent), app_(model), settings_(settings), options_(options) {
    theme_ = std::make_unique<ui::ThemeStore>();
    theme_->setPaletteIsDark(QApplication::palette().color(QPalette::Window).lightness() < 128);
    theme_->setPreference(settings_.general().appearance());
    appearanceObserver_ = settings_.general().observe([this](const std::string& key) {
        if (key == "general.appearance") theme_->setPreference(settings_.general().appearance());
    });
    colorScheme_ = new platform::ColorScheme(app_.sessionBus(), this);
    connect(colorScheme_, &platform::ColorScheme::changed, this,
            [this](std::optional<std::uint32_t> scheme) { theme_->setPortalScheme(scheme); });
    theme_->setPortalScheme(colorScheme_->scheme());
    // The look-up outlives the window, so an answer survives the panel being released.
    publicAddress_ = new ui::PublicAddressLookup(ui::PublicAddressLookup::defaultService(), this);
    connect(publicAddress_, &ui::PublicAddressLookup::changed, this, [this] {
        if (model_) model_->setPublicAddress(publicAddress_->state());
    });
    releaseTimer_.setSingleShot(true);
    releaseTimer_.setInterval(releaseAfterMs);
    connect(&releaseTimer_, &QTimer::timeout, this, &PanelHost::release);
    wireSettings();
}

void PanelHost::wireSettings() {
    controller_ = std::make_unique<ui::SettingsController>();
    // Folders under the home folder read as "~/…", as a terminal shows them.
    auto home = [](const std::string& path) {
        const QString p = QString::fromStdString(path);
        const QString h = QString::fromStdString(platform::XdgPaths::homeDir()) + QLatin1Char('/');
        return p.startsWith(h) ? QStringLiteral("~/") + p.mid(h.size()) : p;
    };
    const bool inMemory = settings_.store().isEphemeral();
    const auto shopFolder = app_.shop().persistence().fileDirectory();
    controller_->setAbout(QString::fromLatin1(build::version),
                          QString::fromLatin1(build::buildNumber),
                          inMemory ? QString() : home(platform::XdgPaths::configDir()),
                          shopFolder ? home(*shopFolder) : QString());
    controller_->setPlaceSearch(
        std::make_unique<weather::WeatherSearch>(&app_.weather().fetcher()));
    controller_->setAutostartProblem(app_.autostartProblem());
    connect(&app_, &AppModel::autostartChanged, controller_.get(),
            [this] { controller_->setAutostartProblem(app_.autostartProblem()); });
    updateShortcutFacts();
    connect(&app_.shortcut(), &platform::GlobalShortcut::stateChanged, controller_.get(),
            [this] { updateShortcutFacts(); });
    // The backend re-binds on every change of the keys; its reason may change without its state.
    settingsObserverForShortcut_ = settings_.general().observe([this](const std::string& key) {
        if (key.rfind("general.globalShortcut", 0) == 0)
            QTimer::singleShot(0, this, [this] { updateShortcutFacts(); });
    });
    auto gift = [this] {
        controller_->setWelcomeGift(app_.shop().engine().welcomeGiftGranted(),
                                    shop::EconomyRules::welcomeGift);
    };
    gift();
    connect(&app_.shop(), &shop::ShopRuntime::changed, controller_.get(), gift);
    connect(controller_.get(), &ui::SettingsController::welcomeGiftRequested, this, [this, gift] {
        if (app_.shop().grantWelcomeGift()) debugLog("welcome gift opened in the tour");
        gift();
        if (isOpen()) feedShop();
    });
    connect(controller_.get(), &ui::SettingsController::shortcutRecording, this,
            [this](bool recording) { app_.setShortcutSuspended(recording); });
    connect(controller_.get(), &ui::SettingsController::actionRequested, this, &PanelHost::perform);
    connect(controller_.get(), &ui::SettingsController::onboardingClosed, this, [this] {
        onboardingStep_ = panel::OnboardingStep::meet;
        if (window_) window_->setCover(nullptr);
        debugLog("welcome tour closed");
    });
    connect(&app_.notifier(), &platform::Notifications::delivered, controller_.get(),
            [this](const QString& key) {
                if (key == QLatin1String(testNotificationKey))
                    controller_->setTestNotificationResult(QStringLiteral(
                        "Sent. Nothing on screen? The desktop may be in Do Not Disturb"));
            });
    connect(&app_.notifier(), &platform::Notifications::failed, controller_.get(),
            [this](const QString& key, const QString& message) {
                if (key == QLatin1String(testNotificationKey))
                    controller_->setTestNotificationResult(
                        QStringLiteral("The desktop's notification service did not answer: ") +
                        message);
            });
}

void PanelHost::updateShortcutFacts() {
    using S = platform::GlobalShortcut::State;
    const auto& shortcut = app_.shortcut();
    panel::ShortcutStatus status = panel::ShortcutStatus::off;
    switch (shortcut.state()) {
        case S::off:
            status = panel::ShortcutStatus::off;
            break;
        case S::pending:
            status = panel::ShortcutStatus::pending;
            break;
        case S::active:
            status = panel::ShortcutStatus::active;
            break;
        case S::unavailable:
            status = panel::ShortcutStatus::unavailable;
            break;
    }
    controller_->setShortcut(status, shortcut.unavailableReason());
}

void PanelHost::perform(panel::RowAction action) {
    switch (action) {
        case panel::RowAction::testNotification: {
            const auto text = panel::testNotification(model_ ? model_->mascotName() : "Mochi");
            controller_->setTestNotificationResult(QStringLiteral("Sending…"));
            app_.notifier().post(QLatin1String(testNotificationKey),
                                 QString::fromStdString(text.title),
                                 QString::fromStdString(text.body));
            debugLog("notifications: test notification sent");
            return;
        }
        case panel::RowAction::showOnboarding:
            showOnboarding();
            return;
        case panel::RowAction::openConfigFolder:
        case panel::RowAction::openDataFolder: {
            const QString folder = QString::fromStdString(
                action == panel::RowAction::openConfigFolder ? platform::XdgPaths::configDir()
                                                             : platform::XdgPaths::dataDir());
            QDir().mkpath(folder);
            QDesktopServices::openUrl(QUrl::fromLocalFile(folder));
            return;
        }
        case panel::RowAction::quit:
            emit quitRequested(QStringLiteral("Settings"));
            return;
        case panel::RowAction::checkForUpdates:
            if (updates_) updates_->updates().checkNow();
            return;
        case panel::RowAction::none:
        case panel::RowAction::resetLayout:
        case panel::RowAction::clearPlace:
            return;
    }
}

void PanelHost::showOnboarding() {
    ui::PanelWindow& w = window();
    // Building the window for a first run has already put the tour up.
    if (qobject_cast<ui::OnboardingView*>(w.cover())) return;
    auto* tour = new ui::OnboardingView(*model_, *theme_, *controller_);
    tour->showStep(onboardingStep_);
    connect(tour, &ui::OnboardingView::stepChanged, this,
            [this](panel::OnboardingStep step) { onboardingStep_ = step; });
    w.setCover(tour);
    debugLog("welcome tour shown at step " +
             std::string(panel::OnboardingStepNames[std::size_t(onboardingStep_)]));
}

bool PanelHost::isShowingOnboarding() const { return window_ && window_->cover(); }

PanelHost::~PanelHost() {
    settings_.general().unobserve(appearanceObserver_);
    settings_.general().unobserve(settingsObserverForShortcut_);
    window_.reset();
    processes_ = nullptr;
    model_.reset();
}

ui::PanelWindow& PanelHost::window() {
    if (!window_) build();
    return *window_;
}

bool PanelHost::isOpen() const { return window_ && window_->isVisible(); }

void PanelHost::build() {
    model_ = std::make_unique<ui::PanelModel>(settings_, app_.layout(), app_.store().history());
    model_->setFirstName(platform::accountFirstName(::getuid()));
    model_->setDayHistory(&app_.store().dayHistory());
    model_->setPublicAddress(publicAddress_->state());
    connect(model_.get(), &ui::PanelModel::publicAddressRequested, publicAddress_, [this] {
        debugLog("public address requested by the user");
        publicAddress_->request();
    });
    window_ = std::make_unique<ui::PanelWindow>(*model_, *theme_);
    window_->setWindowFlags(Qt::Tool | Qt::FramelessWindowHint);
    window_->installEventFilter(this);
    connect(window_.get(), &ui::PanelWindow::closeRequested, this,
            [this] { emit closeRequested(QStringLiteral("Escape")); });
    connect(window_.get(), &ui::PanelWindow::cardActivated, this, [this](const std::string& id) {
        if (const auto detail = panel::detailForCard(id)) showDetail(*detail);
    });
    connect(model_.get(), &ui::PanelModel::petRequested, this,
            [this] { app_.shop().handle(shop::EconomyEvent::pet); });
    // Processes, the Shop and Settings are built when their tab is first shown: most opens
    // are a glance at the Overview.
    window_->setTabScreen(panel::PanelTab::processes, [this] { return buildProcesses(); });

    // The model follows the live stores while the window exists.
    connect(&app_.store(), &metrics::MetricsStore::updated, model_.get(), [this] {
        if (isOpen()) feedSample();
    });
    connect(&app_.animator(), &mascot::MascotAnimator::stateChanged, model_.get(), [this] {
        if (isOpen()) feedMascot();
    });
    connect(&app_.shop(), &shop::ShopRuntime::changed, model_.get(), [this] {
        if (isOpen()) feedShop();
    });
    // The Shop tab and the Golden Fish in the header. A mascot tried on is the animator's to
    // draw, in the menu bar and (through the model) in the header.
    ui::installShop(*window_, *model_, app_.shop(), *theme_, [this](ui::ShopScreen& screen) {
        connect(&screen, &ui::ShopScreen::tryOnRequested, this, [this](const QString& id) {
            const auto until = std::chrono::system_clock::now() +
                               std::chrono::milliseconds(std::lround(shop::tryOnSeconds * 1000));
            app_.animator().tryOn(id.toStdString(), until);
        });
        connect(&screen, &ui::ShopScreen::tryOnStopped, this,
                [this] { app_.animator().endTryOn(); });
    });
    connect(&app_.animator(), &mascot::MascotAnimator::drawnMascotChanged, model_.get(), [this] {
        if (isOpen()) feedMascot();
    });
    connect(&app_.weather().store(), &weather::WeatherStore::changed, model_.get(), [this] {
        if (isOpen()) feedWeather();
    });
    connect(&app_, &AppModel::motionPolicyChanged, model_.get(),
            [this] { model_->setReduceMotion(app_.motionReduced()); });
    if (updates_) connectUpdates();
    window_->setTabScreen(panel::PanelTab::settings, [this] {
        settingsView_ = new ui::SettingsView(*model_, *theme_, *controller_);
        return settingsView_;
    });
    if (panel::opensOnStart(settings_.general())) showOnboarding();
    builtSinceShown_ = true;
    debugLog("panel built");
}

QWidget* PanelHost::buildProcesses() {
    // Fixture and mock rows carry made-up PIDs that must never be signalled for real.
    const bool realProcesses = !options_.fixture && !options_.mock;
    std::unique_ptr<processes::ProcessControl> control;
    if (realProcesses)
        control = std::make_unique<platform::LinuxProcessControl>();
    else
        control = std::make_unique<processes::SimulatedProcessControl>();
    processes::QuitContext context;
    context.selfPid = std::int32_t(QCoreApplication::applicationPid());
    processes_ = new processes::ProcessesController(std::move(control), context, model_.get());
    if (const char* query = std::getenv("TROTLET_QA_PROCESS_QUERY")) processes_->setQuery(query);
    auto* session = new platform::SessionProcesses(app_.sessionBus(), processes_);
    connect(session, &platform::SessionProcesses::found, processes_,
            [this](const std::vector<std::int32_t>& pids) { processes_->setSessionPids(pids); });
    connect(processes_, &processes::ProcessesController::processQuit, this, [this] {
        debugLog("processes: a process quit at the user's request");
        app_.shop().handle(shop::EconomyEvent::processQuit);
    });
    auto* screen = new ui::ProcessesScreen(*processes_, *model_, *theme_);
    // The full process list is read only while this screen shows it.
    connect(screen, &ui::ProcessesScreen::shownChanged, this, [this](bool shown) {
        app_.store().setProcessListVisible(shown);
        debugLog(shown ? "processes: full list on" : "processes: full list off");
    });
    return screen;
}

void PanelHost::feedSample() {
    if (app_.store().hasSnapshot()) {
        const auto& sample = app_.store().latest();
        model_->setSample(sample, app_.store().latestKinds());
        if (processes_ && sample.processes.all) processes_->setRows(*sample.processes.all);
    }
    // The day's counters (distance, sleep, peaks) move with every tick without a shop change.
    feedPaw();
}

void PanelHost::feedMascot() {
    const auto& animator = app_.animator();
    model_->setMascot(animator.drawnMascotId(), animator.visual(), animator.framesPerSecond());
    if (const auto* item = shop::Catalog::item(animator.drawnMascotId()))
        model_->setMascotName(item->name);
}

void PanelHost::feedShop() {
    model_->setFishBalance(app_.shop().engine().wallet().balance());
    feedPaw();
}

void PanelHost::feedPaw() {
    const auto& shop = app_.shop();
    const auto& engine = shop.engine();
    const double now = engine.trustedNow();
    reports::PawReportInputs in;
    in.currentDay = engine.dayKey(now);
    in.today = engine.today();
    in.fishEarnedToday = engine.wallet().earned(now);
    in.pastDays = engine.pastDays();
    in.lifetime = engine.lifetime();
    in.temperatureUnit = settings_.monitoring().temperatureUnit();
    model_->setPaw(reports::buildPawReport(in, shop.calendar()));
}

void PanelHost::feedWeather() {
    const auto now = std::chrono::duration_cast<std::chrono::seconds>(
                         std::chrono::system_clock::now().time_since_epoch())
                         .count();
    const auto& store = app_.weather().store();
    const auto report = store.currentReport();
    model_->setWeather(panel::summarizeWeather(report, now), report);
    panel::WeatherDetailInputs detail;
    detail.placeChosen = store.location().has_value();
    detail.report = report;
    if (store.status().kind == weather::WeatherStatus::Kind::failed)
        detail.error = store.status().error;
    detail.loading = store.status().kind == weather::WeatherStatus::Kind::loading;
    detail.imperialWind = weather::usesImperialWind(QLocale::system().name().toStdString());
    model_->setWeatherDetail(std::move(detail));
}

void PanelHost::show(const QElapsedTimer& startedAt) {
    releaseTimer_.stop();
    ui::PanelWindow& w = window();
    const bool first = builtSinceShown_;
    builtSinceShown_ = false;
    model_->setReduceMotion(app_.motionReduced());
    feedMascot();
    feedShop();
    feedWeather();
    feedSample();
    if (updates_) {
        updates_->whatsNew().expireIfOld(QDateTime::currentSecsSinceEpoch());
        feedNotice();
    }
    if (perfLogging()) {
        perfClock_ = startedAt;
        perfWhat_ = first ? "built for this open" : "kept from before";
    }
    w.header().setAnimating(true);
    w.show();
    debugLog(first ? "panel shown (built now)" : "panel shown (kept from before)");
}

void PanelHost::setUpdates(updates::UpdatesRuntime* updates) {
    updates_ = updates;
    if (model_ && updates_) connectUpdates();
    if (!updates_) {
        controller_->setUpdates(false, {});
        return;
    }
    // About shows the checker's line under "Check for updates", kept current.
    auto line = [this] {
        controller_->setUpdates(true, QString::fromStdString(
                                          updates::updateStatusLine(updates_->updates().status())));
    };
    connect(&updates_->updates(), &updates::UpdateStore::changed, controller_.get(), line);
    line();
}

void PanelHost::connectUpdates() {
    auto feed = [this] { feedNotice(); };
    connect(&updates_->updates(), &updates::UpdateStore::changed, model_.get(), feed);
    connect(&updates_->whatsNew(), &updates::WhatsNewStore::changed, model_.get(), feed);
    connect(&updates_->installOffer(), &updates::InstallOfferStore::changed, model_.get(), feed);
    connect(
        model_.get(), &ui::PanelModel::noticeActionRequested, this,
        [this](updates::PanelNotice::Kind kind, bool primary) {
            using Kind = updates::PanelNotice::Kind;
            auto& offer = updates_->installOffer();
            auto& store = updates_->updates();
            debugLog(std::string("notice: ") + (primary ? "primary" : "secondary") + " action");
            if (kind == Kind::installOffer) {
                primary ? void(offer.install()) : offer.decline();
            } else if (kind == Kind::whatsNew) {
                updates_->whatsNew().dismiss();
            } else if (!primary) {
                store.dismissBanner();
            } else {
                const updates::UpdateBanner banner = store.banner();
                if (banner.action == updates::UpdateBanner::Action::install)
                    store.installUpdate();
                else if (banner.action == updates::UpdateBanner::Action::showCommand)
                    QGuiApplication::clipboard()->setText(QString::fromStdString(banner.command));
                else if (banner.action == updates::UpdateBanner::Action::openPage)
                    QDesktopServices::openUrl(QUrl(QString::fromStdString(banner.url)));
            }
        });
    feedNotice();
}

void PanelHost::feedNotice() {
    if (!model_ || !updates_) return;
    const auto& offer = updates_->installOffer();
    auto notice = updates::panelNotice(
        offer.isOffered() ? std::optional(offer.decision()) : std::nullopt,
        updates_->updates().banner(), updates_->whatsNew().notes(), build::version);
    if (notice && notice->kind == updates::PanelNotice::Kind::installOffer &&
        !offer.problem().empty())
        notice->detail = "Could not install: " + offer.problem();
    const std::string shown =
        notice ? std::string(updates::panelNoticeKindName(notice->kind)) : std::string("none");
    if (model_->notice() != notice) debugLog("panel notice: " + shown);
    model_->setNotice(std::move(notice));
}

void PanelHost::hide() {
    if (!window_) return;
    window_->header().setAnimating(false);
    // A closed panel is not left half arranged: edit mode ends with it.
    window_->overview().setEditing(false);
    window_->hide();
    releaseTimer_.start();
}

void PanelHost::showTab(panel::PanelTab tab) { window().showTab(tab); }

void PanelHost::showDetail(panel::MetricDetail detail) {
    auto& w = window();
    const std::string name(panel::MetricDetailNames[std::size_t(detail)]);
    if (perfLogging() && !perfClock_) {
        perfClock_.emplace();
        perfClock_->start();
        perfWhat_ = "detail " + name;
    }
    if (detail == panel::MetricDetail::pawreport) {
        w.showTab(panel::PanelTab::overview);
        feedPaw();
        auto* view = new reports::PawReportView(*model_, *theme_);
        connect(view, &reports::PawReportView::backRequested, &w, [&w] { w.popDetail(); });
        w.pushDetail(view);
        debugLog("detail pawreport shown");
        return;
    }
    ui::openDetail(w, *model_, *theme_, detail);
    debugLog("detail " + name + " shown");
}

void PanelHost::release() {
    if (!window_ || window_->isVisible()) return;
    releaseTimer_.stop();
    settingsView_ = nullptr;
    window_.reset();
    processes_ = nullptr;
    model_.reset();
    // What the window's teardown left to the event loop goes first, with the fonts it held.
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    ui::dropUnusedFontEngines();
#ifdef __GLIBC__
    // The window's allocations sat between longer-lived ones; hand the freed pages back now
    // rather than keep them for a panel that may not open again for hours.
    malloc_trim(0);
#endif
    debugLog("panel released after a minute closed");
}

bool PanelHost::eventFilter(QObject* watched, QEvent* event) {
    if (watched == window_.get()) {
        if (event->type() == QEvent::KeyPress && perfLogging() && window_->hasDetail()) {
            // Back to the Overview (the window pops the detail on these keys).
            auto* key = static_cast<QKeyEvent*>(event);
            const bool alt = key->modifiers() & Qt::AltModifier;
            if (key->key() == Qt::Key_Escape || (alt && key->key() == Qt::Key_Left)) {
                perfClock_.emplace();
                perfClock_->start();
                perfWhat_ = "back to the Overview";
            }
        }
        if (event->type() == QEvent::WindowDeactivate && !options_.keepPanelOpen &&
            window_->isVisible())
            emit closeRequested(QStringLiteral("focus lost"));
        if (event->type() == QEvent::UpdateRequest && perfClock_) {
            // The update request paints the whole window; its end is the first frame shown.
            const bool handled = static_cast<QObject*>(window_.get())->event(event);
            std::fprintf(stderr, "trotlet: panel first frame %.1f ms after the request (%s)\n",
                         double(perfClock_->nsecsElapsed()) / 1e6, perfWhat_.c_str());
            perfClock_.reset();
            return handled;
        }
    }
    return QObject::eventFilter(watched, event);
}

}  // namespace trotlet::app
