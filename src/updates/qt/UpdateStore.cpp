#include "updates/qt/UpdateStore.h"

#include <sys/utsname.h>

#include <algorithm>

#include <QDateTime>

#include "settings/SettingsKeys.h"
#include "updates/ReleaseFeed.h"
#include "updates/qt/UpdateInstaller.h"

namespace trotlet::updates {

namespace {

std::optional<std::int64_t> storedTime(const settings::DefaultsStore& store,
                                       const std::string& key) {
    const std::string text = store.string(key, "");
    const QDateTime time = QDateTime::fromString(QString::fromStdString(text), Qt::ISODate);
    if (!time.isValid()) return std::nullopt;
    return time.toSecsSinceEpoch();
}

std::string isoTime(std::int64_t seconds) {
    return QDateTime::fromSecsSinceEpoch(seconds, Qt::UTC).toString(Qt::ISODate).toStdString();
}

}  // namespace

std::string machineArch() {
    struct utsname name {};
    return ::uname(&name) == 0 ? std::string(name.machine) : std::string("unknown");
}

UpdateStore::UpdateStore(settings::DefaultsStore& store, Config config, QObject* parent)
    : QObject(parent), store_(store), config_(std::move(config)) {
    if (!config_.clock) config_.clock = [] { return QDateTime::currentSecsSinceEpoch(); };
    status_.channel = config_.channel;
    auto fallback = store_.object(settings::keys::usingFallbackFeed);
    status_.usingFallbackFeed = fallback && fallback->is_boolean() && fallback->get<bool>();
    status_.lastChecked = storedTime(store_, settings::keys::lastUpdateCheck);
    automatic_.setSingleShot(true);
    connect(&automatic_, &QTimer::timeout, this, [this] {
        const auto wait = secondsUntilAutomaticCheck(status_.lastChecked, now());
        if (wait <= automaticCheckStartDelay && !checking_) {
            note("automatic check");
            checkNow();
        }
        armAutomaticTimer();
    });
}

UpdateStore::~UpdateStore() = default;

std::int64_t UpdateStore::now() const { return config_.clock(); }

void UpdateStore::note(const std::string& line) { trace_.push_back(line); }

std::string UpdateStore::primaryFeedURL() const {
    const std::string override = store_.string(settings::keys::feedURLOverride, "");
    return override.empty() ? config_.feedURL : override;
}

void UpdateStore::setPhase(UpdatePhase phase, std::string message) {
    status_.phase = phase;
    status_.message = std::move(message);
    emit changed();
}

void UpdateStore::dismissBanner() {
    if (status_.bannerDismissed) return;
    status_.bannerDismissed = true;
    note("banner dismissed");
    emit changed();
}

void UpdateStore::startAutomaticChecks() {
    note("automatic checks on");
    armAutomaticTimer();
}

void UpdateStore::armAutomaticTimer() {
    // Re-evaluated at least hourly: a monotonic timer does not run while the computer sleeps,
    // and the wall clock decides when a day has passed.
    const auto wait = secondsUntilAutomaticCheck(status_.lastChecked, now());
    automatic_.start(static_cast<int>(std::min<std::int64_t>(wait, 3600) * 1000));
}

void UpdateStore::checkNow() {
    if (checking_) return;
    checking_ = true;
    status_.offer.reset();
    status_.bannerDismissed = false;
    setPhase(UpdatePhase::checking);
    const std::string url = primaryFeedURL();
    note("check " + url);
    fetchFeed(url, false);
}

void UpdateStore::checkAndInstall() {
    installWhenAvailable_ = true;
    checkNow();
}

void UpdateStore::fetchFeed(const std::string& url, bool isFallback) {
    if (!isAllowedUpdateURL(url)) {
        QTimer::singleShot(0, this, [this, url, isFallback] {
            HttpResult r;
            r.status = HttpResult::Status::network;
            r.httpStatus = -1;  // marks the refused address
            onFeed(url, isFallback, r);
        });
        return;
    }
    http_.get(url, config_.feedLimits,
              [this, url, isFallback](HttpResult r) { onFeed(url, isFallback, std::move(r)); });
}

void UpdateStore::onFeed(const std::string& url, bool isFallback, HttpResult result) {
    std::optional<CheckFailure> failure;
    std::optional<ReleaseFeed> feed;
    if (result.status == HttpResult::Status::network && result.httpStatus == -1)
        failure = CheckFailure::insecureAddress;
    else if (result.status == HttpResult::Status::timeout)
        failure = CheckFailure::timeout;
    else if (result.status == HttpResult::Status::httpStatus)
        failure = CheckFailure::httpStatus;
    else if (result.status != HttpResult::Status::ok)
        failure = CheckFailure::network;
    else if (!(feed = decodeReleaseFeed(std::string_view(result.body.constData(),
                                                         static_cast<size_t>(result.body.size())))))
        failure = CheckFailure::malformedFeed;

    if (failure) {
        note(std::string(isFallback ? "fallback" : "feed") +
             " failed: " + std::string(checkFailureName(*failure)));
        const bool overridden = !store_.string(settings::keys::feedURLOverride, "").empty();
        if (!isFallback && !overridden && !config_.fallbackURL.empty()) {
            note("trying the fallback " + config_.fallbackURL);
            fetchFeed(config_.fallbackURL, true);
            return;
        }
        finishCheck();
        installWhenAvailable_ = false;
        setPhase(UpdatePhase::checkFailed, checkFailureText(*failure, result.httpStatus));
        return;
    }

    if (status_.usingFallbackFeed != isFallback) {
        status_.usingFallbackFeed = isFallback;
        store_.set(settings::SettingValue(isFallback), settings::keys::usingFallbackFeed);
    }
    finishCheck();
    status_.offer = newestOffer(*feed, config_.current, config_.arch);
    note(
        "feed from " + url + ": " + std::to_string(feed->releases.size()) + " release(s), " +
        (status_.offer ? "newer " + status_.offer->release.version : std::string("nothing newer")));
    if (!status_.offer) {
        installWhenAvailable_ = false;
        setPhase(UpdatePhase::upToDate);
        return;
    }
    setPhase(UpdatePhase::available);
    if (installWhenAvailable_) {
        installWhenAvailable_ = false;
        installUpdate();
    }
}

void UpdateStore::finishCheck() {
    checking_ = false;
    status_.lastChecked = now();
    store_.set(settings::SettingValue(isoTime(*status_.lastChecked)),
               settings::keys::lastUpdateCheck);
}

void UpdateStore::installUpdate() {
    if (status_.phase != UpdatePhase::available || !status_.offer) return;
    if (config_.channel != InstallChannel::userLocal) {
        note("install refused: not a user-local install");
        setPhase(UpdatePhase::refused, refusalText(UpdateRefusal::notInstalledForUser));
        return;
    }
    if (!status_.offer->download) {
        setPhase(UpdatePhase::refused, refusalText(UpdateRefusal::noDownload));
        return;
    }
    const ReleaseDownload& d = *status_.offer->download;
    note("download " + d.url);
    status_.progress = 0;
    setPhase(UpdatePhase::downloading);
    HttpLimits limits = config_.downloadLimits;
    // Room for one byte more than announced, so that a larger file is seen as such.
    limits.maxBytes = d.size + 1;
    http_.get(
        d.url, limits, [this](HttpResult r) { onDownload(std::move(r)); },
        [this, size = d.size](qint64 got, qint64) {
            status_.progress = std::clamp(double(got) / double(size), 0.0, 1.0);
            emit changed();
        });
}

void UpdateStore::onDownload(HttpResult result) {
    if (result.status == HttpResult::Status::httpStatus) {
        note("download failed: HTTP " + std::to_string(result.httpStatus));
        setPhase(UpdatePhase::refused, "The download failed (HTTP " +
                                           std::to_string(result.httpStatus) +
                                           "); nothing changed.");
        return;
    }
    if (result.status == HttpResult::Status::tooLarge) {
        note("download refused: " + std::string(refusalName(UpdateRefusal::wrongSize)));
        setPhase(UpdatePhase::refused, refusalText(UpdateRefusal::wrongSize));
        return;
    }
    if (result.status != HttpResult::Status::ok) {
        // A transfer that broke off or stalled is refused whatever arrived.
        const auto refusal = UpdateRefusal::incompleteDownload;
        note("download refused: " + std::string(refusalName(refusal)));
        setPhase(
            UpdatePhase::refused,
            refusalText(refusal, std::to_string(result.body.size()) + " of " +
                                     std::to_string(status_.offer->download->size) + " bytes"));
        return;
    }
    setPhase(UpdatePhase::installing);
    UpdateInstaller installer(config_.installFolder, config_.publicKey, config_.current);
    const InstallOutcome outcome = installer.install(result.body, *status_.offer);
    if (!outcome.ok) {
        note("download refused: " + std::string(refusalName(*outcome.refusal)));
        setPhase(UpdatePhase::refused, outcome.message);
        return;
    }
    note("installed " + outcome.installed->version.text() + " at " + outcome.program);
    setPhase(UpdatePhase::relaunching);
    if (config_.relaunch && config_.relaunch(outcome.program)) {
        note("relaunch started");
        emit relaunched();
    } else {
        note("relaunch failed");
        setPhase(UpdatePhase::refused,
                 "Trotlet " + outcome.installed->version.text() +
                     " is installed but did not start; quit and open it again.");
    }
}

}  // namespace trotlet::updates
