#include "app/qt/AppModel.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include <QCoreApplication>
#include <QDBusConnection>
#include <QGuiApplication>
#include <QScreen>

#include "alerts/qt/NotificationController.h"
#include "app/qt/DebugLog.h"
#include "layout/LayoutStore.h"
#include "mascot/qt/MascotAnimator.h"
#include "menubar/LabelPlacement.h"
#include "menubar/qt/StatusItemController.h"
#include "metrics/qt/MetricsStore.h"
#include "metrics/qt/PowerProfiles.h"
#include "metrics/qt/ProviderFactory.h"
#include "platform/freedesktop/Autostart.h"
#include "platform/freedesktop/GlobalShortcut.h"
#include "platform/freedesktop/IdleMonitor.h"
#include "platform/freedesktop/Notifications.h"
#include "platform/freedesktop/ReduceMotion.h"
#include "platform/freedesktop/NetworkManagerWifi.h"
#include "platform/freedesktop/ScreenLock.h"
#include "platform/freedesktop/TrayItem.h"
#include "settings/AppSettings.h"
#include "shop/Catalog.h"
#include "shop/qt/CheckInReminders.h"
#include "shop/qt/ShopAlerts.h"
#include "shop/qt/ShopRuntime.h"
#include "weather/qt/WeatherRuntime.h"

namespace trotlet::app {

namespace {

std::string envOrEmpty(const char* name) {
    const char* value = std::getenv(name);
    return value ? value : "";
}

std::string mascotDisplayName(const std::string& id) {
    const shop::CatalogItem* item = shop::Catalog::item(id);
    return item ? item->displayName() : id;
}

}  // namespace

AppModel::AppModel(const cli::LaunchOptions& options, settings::AppSettings& settings,
                   QMenu* trayMenu, QObject* parent)
    : QObject(parent), options_(options), settings_(settings) {
    std::vector<std::string> warnings;
    store_ =
        std::make_unique<metrics::MetricsStore>(metrics::makeProvider(options_, &warnings), this);
    for (const std::string& warning : warnings)
        std::fprintf(stderr, "trotlet: %s\n", warning.c_str());

    // The real readers cannot ask D-Bus for the power profile; fake data keeps its own.
    if (!options_.mock && !options_.fixture) {
        power_ = new metrics::PowerProfiles(this);
        store_->setLowPowerSource(power_);
        wifi_ = new platform::NetworkManagerWifi(QDBusConnection::systemBus(), this);
        store_->setWifiSource(wifi_);
    }
    store_->setUpdateInterval(settings_.monitoring().updateInterval());

    const QDBusConnection session = QDBusConnection::sessionBus();
    auto idleOptions = platform::IdleMonitor::Options::fromEnvironment();
    if (options_.idleSeconds) idleOptions.fixedSeconds = options_.idleSeconds;
    idle_ = new platform::IdleMonitor(session, idleOptions, this);
    reduceMotion_ =
        new platform::ReduceMotion(session, platform::ReduceMotion::fixedFromEnvironment(), this);
    screenLock_ = new platform::ScreenLock(session, QDBusConnection::systemBus(), this);

    animator_ = new mascot::MascotAnimator(this);
    animator_->setIdleSeconds([idle = idle_] { return idle->idleSeconds(); });
    applyMascotSettings();
    connect(reduceMotion_, &platform::ReduceMotion::changed, this, [this] {
        applyMascotSettings();
        emit motionPolicyChanged();
    });
    connect(screenLock_, &platform::ScreenLock::lockedChanged, this, [this](bool locked) {
        debugLog(locked ? "screen locked: mascot paused" : "screen unlocked: mascot resumed");
        screenLocked_ = locked;
        applyPause();
    });
    if (power_)
        connect(power_, &metrics::PowerProfiles::lowPowerModeChanged, this,
                [this] { applyMascotSettings(); });
    observe(settings_.menuBar(), [this](const std::string&) {
        applyMascotSettings();
        emit motionPolicyChanged();
        applyExtraKinds();
        applyPause();
    });
    observe(settings_.mascot(), [this](const std::string&) { applyMascotSettings(); });
    observe(settings_.monitoring(), [this](const std::string&) {
        store_->setUpdateInterval(settings_.monitoring().updateInterval());
    });
    applyExtraKinds();
    applyPause();

    tray_ = platform::TrayItem::create(session, this);
    tray_->setMenu(trayMenu);
    connect(tray_.get(), &platform::TrayItem::activated, this, &AppModel::trayActivated);
    const auto placement = menubar::labelPlacementFor(envOrEmpty("XDG_CURRENT_DESKTOP"),
                                                      envOrEmpty("TROTLET_TRAY_LABEL"));
    statusItem_ =
        new menubar::StatusItemController(*tray_, *animator_, *store_, settings_, placement, this);
    const std::string name = mascotDisplayName(animator_->drawnMascotId());
    statusItem_->setMascotName(QString::fromStdString(name));

    notifier_ = new platform::Notifications(session, this);
    notifications_ = new alerts::NotificationController(
        settings_.notifications(), notifier_,
        alerts::NotificationController::Options::from(options_), this);
    notifications_->followTemperatureUnit(settings_.monitoring());
    notifications_->setMascotName(name);

    shortcut_ =
        new platform::GlobalShortcut(session, platform::GlobalShortcut::backendForSession(), this);
    connect(shortcut_, &platform::GlobalShortcut::activated, this,
            [this] { emit trayActivated(QPoint()); });
    applyGeneralSettings();
    observe(settings_.general(), [this](const std::string& key) {
        if (key == "general.launchAtLogin" && settings_.store().isEphemeral()) {
            // A session that keeps nothing leaves the desktop's login entries alone too.
            autostartProblem_ =
                QStringLiteral("Not saved: this session keeps its settings in memory");
            emit autostartChanged();
        } else if (key == "general.launchAtLogin") {
            const auto written = platform::Autostart::setEnabled(
                settings_.general().launchAtLogin(),
                QCoreApplication::applicationFilePath().toStdString());
            if (!written) std::fprintf(stderr, "trotlet: %s\n", written.error.c_str());
            autostartProblem_ = written ? QString() : QString::fromStdString(written.error);
            emit autostartChanged();
        }
        // Finishing or skipping the welcome tour hands over a gift it did not open.
        if (key == "general.hasCompletedOnboarding" &&
            settings_.general().hasCompletedOnboarding() && shop_)
            shop_->grantWelcomeGift();
        if (key.rfind("general.globalShortcut", 0) == 0) applyGeneralSettings();
    });

    buildEngines();

    connect(store_.get(), &metrics::MetricsStore::updated, this, &AppModel::onSample);
    store_->setTier(metrics::ConsumerTier::menuBarOnly);
    store_->start();
    tray_->setVisible(true);
}

AppModel::~AppModel() {
    // The shop saves what is pending as it goes (its moments reach the notifications, so it
    // goes before them). The status item asks the weather for its text, so it goes before the
    // weather, which then stops its fetch and its settings observer.
    delete shop_;
    // Consumers next: they hold references to the store, the animator and the tray item.
    delete statusItem_;
    delete weather_;
    delete notifications_;
    // Observers capture `this`; the groups outlive the model.
    for (const auto& [group, id] : observers_) group->unobserve(id);
    store_->stop();
}

void AppModel::observe(settings::SettingsGroup& group,
                       std::function<void(const std::string&)> observer) {
    observers_.emplace_back(&group, group.observe(std::move(observer)));
}

void AppModel::buildEngines() {
    std::random_device entropy;
    const std::uint64_t seed = (static_cast<std::uint64_t>(entropy()) << 32) ^ entropy();
    const bool ephemeral = settings_.store().isEphemeral();

    shop::ShopRuntime::Options shopOptions;
    shopOptions.seed = seed;
    shopOptions.goldenFishEnabled = settings_.mascot().goldenFish();
    // A first run's gift is opened in the welcome tour.
    shopOptions.welcomeGiftAtStart = settings_.general().hasCompletedOnboarding();
    const shop::ShopDebugOptions debug = shop::ShopRuntime::debugOptionsFromArguments();
    shopOptions.grantFish = debug.grantFish;
    shop_ = new shop::ShopRuntime(shop::ShopRuntime::systemParts(debug, ephemeral, seed),
                                  shopOptions, this);
    const auto shopFolder = shop_->persistence().fileDirectory();
    debugLog(shopFolder ? "shop file in " + *shopFolder
                        : std::string("shop in memory (never saved to disk)"));
    connect(shop_, &shop::ShopRuntime::momentRaised, this,
            [this](const shop::EconomyMoment& moment) {
                debugLog("economy: " + moment.text);
                if (const auto event = shop::alertEventFor(moment))
                    notifications_->onEvent(*event, std::chrono::system_clock::now());
                using Kind = shop::EconomyMoment::Kind;
                if (moment.kind == Kind::achievementUnlocked || moment.kind == Kind::purchased ||
                    moment.kind == Kind::mascotEarned)
                    animator_->celebrate();
            });
    connect(shop_, &shop::ShopRuntime::equippedChanged, this,
            [this](const QString& id) { showEquippedMascot(id.toStdString()); });
    showEquippedMascot(shop_->engine().inventory().equipped());
    observe(settings_.mascot(), [this](const std::string&) {
        shop_->setGoldenFishEnabled(settings_.mascot().goldenFish());
    });
    shop_->start();
    reminders_ = new shop::CheckInReminders(*shop_, settings_, *notifications_, this);

    weather_ = new weather::WeatherRuntime(settings_.weather(), ephemeral, this);
    statusItem_->setWeatherText([this]() -> QString {
        if (!settings_.weather().showInMenuBar()) return {};
        const bool fahrenheit =
            settings_.monitoring().temperatureUnit() == settings::TemperatureUnit::fahrenheit;
        const auto text = weather_->store().menuBarText(fahrenheit);
        return text ? QString::fromStdString(*text) : QString();
    });
    // A new forecast, or the switch turned on, shows before the next sample.
    connect(&weather_->store(), &weather::WeatherStore::changed, statusItem_,
            &menubar::StatusItemController::weatherChanged);
    observe(settings_.weather(), [this](const std::string&) { statusItem_->weatherChanged(); });
    layout_ = std::make_unique<layout::LayoutStore>(settings_.layout(), settings_.monitoring());
}

void AppModel::showEquippedMascot(const std::string& mascotId) {
    // A file may name a mascot this build doesn't know; the animator then keeps drawing the
    // one it has.
    if (!shop::Catalog::item(mascotId)) return;
    animator_->equip(mascotId);
    const std::string name = mascotDisplayName(animator_->drawnMascotId());
    statusItem_->setMascotName(QString::fromStdString(name));
    notifications_->setMascotName(name);
}

void AppModel::applyPause() {
    // With the mascot hidden the item shows a still glyph: frames nobody sees cost nothing.
    animator_->setPaused(screenLocked_ || !settings_.menuBar().showMascot());
}

void AppModel::applyExtraKinds() {
    // Reading the GPU can wake a sleeping discrete card, so it is sampled only while something
    // shows it in the menu bar.
    const auto& menuBar = settings_.menuBar();
    const bool gpu = menuBar.speedSource() == settings::LoadSource::gpu ||
                     menuBar.speedSource() == settings::LoadSource::busiest ||
                     menuBar.textMetric() == settings::MenuBarTextMetric::gpu;
    store_->setExtraKinds(gpu ? metrics::MetricKinds::gpu : metrics::MetricKinds());
}

bool AppModel::motionReduced() const {
    return reduceMotion_->reduceMotion().value_or(false) &&
           !settings_.menuBar().animateWithReduceMotion();
}

QDBusConnection AppModel::sessionBus() const { return QDBusConnection::sessionBus(); }

void AppModel::setPanelOpen(bool open) {
    panelOpen_ = open;
    store_->setTier(open ? metrics::ConsumerTier::panelOpen : metrics::ConsumerTier::menuBarOnly);
    notifications_->setPanelOpen(open);
    shop_->setPanelOpen(open);
    weather_->setPanelOpen(open);
    if (open) store_->sampleNow();
    if (debugLogEnabled()) {
        char line[96];
        std::snprintf(line, sizeof line, "sampling: %s tier, every %.1f s",
                      open ? "panel" : "menu bar", store_->plan().intervalSec);
        debugLog(line);
    }
}

void AppModel::onSample() {
    const metrics::MetricsSnapshot& snapshot = store_->latest();
    idle_->refresh();  // answers arrive before the next sample; never waits here
    // Battery level and low power change the frame budget; re-apply only when they do.
    const auto before = animator_->settings().frame;
    auto settings = animator_->settings();
    settings.frame = mascot::FrameEnvironment::fromSnapshot(snapshot, settings.frame);
    if (settings.frame.onLowBattery != before.onLowBattery ||
        settings.frame.lowPowerMode != before.lowPowerMode)
        animator_->setSettings(settings);
    animator_->ingest(snapshot);
    notifications_->onLatestSample(snapshot);

    shop::ShopTick tick = shop::ShopTick::fromSnapshot(snapshot, store_->latestKinds());
    tick.idleSeconds = idle_->idleSeconds();
    const double distance = animator_->distanceMeters();
    tick.metersRun = std::max(0.0, distance - lastDistance_);
    lastDistance_ = distance;
    const mascot::MascotMood mood = animator_->state().mood;
    tick.mascotAsleep = mood == mascot::MascotMood::sleeping;
    if (mood == mascot::MascotMood::overheated && lastMood_ != mascot::MascotMood::overheated)
        shop_->mascotOverheated();
    lastMood_ = mood;
    shop_->tick(tick);
    reminders_->check(panelOpen_, notifications_->rules().mascotName());
}

void AppModel::setShortcutSuspended(bool suspended) {
    if (suspended == shortcutSuspended_) return;
    shortcutSuspended_ = suspended;
    debugLog(suspended ? "global shortcut: let go while Settings records one"
                       : "global shortcut: recording over");
    applyGeneralSettings();
}

void AppModel::applyGeneralSettings() {
    const auto& general = settings_.general();
    if (general.globalShortcutEnabled() && !shortcutSuspended_ &&
        !std::getenv("TROTLET_QA_NO_HOTKEY"))
        shortcut_->setShortcut(general.globalShortcutKeyCode(), general.globalShortcutModifiers());
    else
        shortcut_->clear();
    debugLog("global shortcut: " + shortcut_->displayText().toStdString() +
             (shortcut_->unavailableReason().isEmpty()
                  ? ""
                  : " (" + shortcut_->unavailableReason().toStdString() + ")"));
}

void AppModel::applyMascotSettings() {
    const auto& menuBar = settings_.menuBar();
    const auto& mascotSettings = settings_.mascot();
    mascot::MascotAnimator::Settings s = animator_->settings();
    s.speedSource = menuBar.speedSource();
    s.speedSensitivity = menuBar.speedSensitivity();
    s.stateReactions = mascotSettings.stateReactions();
    s.sleepWhenIdle = mascotSettings.sleepWhenIdle();
    s.frame.maxFPS = menuBar.maxFPS();
    s.frame.saveEnergy = menuBar.saveEnergy();
    s.frame.pauseAnimation = menuBar.pauseAnimation();
    s.frame.animateWithReduceMotion = menuBar.animateWithReduceMotion();
    s.frame.reduceMotion = reduceMotion_->reduceMotion().value_or(false);
    if (power_) s.frame.lowPowerMode = power_->lowPowerMode();
    if (const QScreen* screen = QGuiApplication::primaryScreen())
        s.devicePixelRatio = screen->devicePixelRatio();
    animator_->setSettings(s);
}

}  // namespace trotlet::app
