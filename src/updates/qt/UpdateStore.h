#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include <QObject>
#include <QTimer>

#include "settings/DefaultsStore.h"
#include "updates/UpdateStatus.h"
#include "updates/qt/UpdateHttp.h"

namespace trotlet::updates {

// The feeds Trotlet asks for releases.
inline constexpr const char* builtInFeedURL = "https://trotlet.github.io/releases/feed.json";
inline constexpr const char* fallbackFeedURL =
    "https://raw.githubusercontent.com/trotlet/trotlet/main/releases/feed.json";

// The machine architecture as `uname -m` names it, which the feed's downloads are keyed by.
std::string machineArch();

// The update checker and installer of one session, and the state the panel shows.
//
// A check asks the feed at "updates.feedURLOverride" when that is set (and only there),
// otherwise the built-in feed and, when that fails, the fallback one; "updates.usingFallbackFeed"
// records which answered. Automatic checks, when enabled, run at most once a day (the time of
// the last check is kept in "updates.lastCheckedAt"). A user-local install downloads, verifies
// and replaces itself (UpdateInstaller) and then relaunches; a package install is told the
// package manager's command.
class UpdateStore : public QObject {
    Q_OBJECT
public:
    struct Config {
        std::string feedURL = builtInFeedURL;
        std::string fallbackURL = fallbackFeedURL;
        BuildId current;
        std::string arch;
        InstallChannel channel = InstallChannel::unmanaged;
        std::string installFolder;  // the user-local install this copy runs from
        std::string publicKey;      // the release key, base64
        HttpLimits feedLimits{10000, 20000, 1 << 20};
        HttpLimits downloadLimits{30000, 30 * 60 * 1000, 512 << 20};
        std::function<std::int64_t()> clock;  // Unix seconds; the system clock by default
        // Starts the installed program; true when it started. The app then quits.
        std::function<bool(const std::string& program)> relaunch;
    };

    UpdateStore(settings::DefaultsStore& store, Config config, QObject* parent = nullptr);
    ~UpdateStore() override;

    const UpdateStatus& status() const { return status_; }
    UpdateBanner banner() const { return updateBanner(status_); }
    std::string statusLine() const { return updateStatusLine(status_); }
    // The feed a check asks first: the override or the built-in one.
    std::string primaryFeedURL() const;

    // Checks now ("Check for updates", --check-updates). A check under way is not doubled.
    void checkNow();
    // Checks, and installs a newer release at once when this copy can replace itself
    // (--update-now).
    void checkAndInstall();
    // Downloads, verifies and installs the offered release, then relaunches.
    void installUpdate();
    // "Later": hides the banner until a check announces a release again.
    void dismissBanner();
    // Automatic checks: the first a little after start, then one a day.
    void startAutomaticChecks();

    // One line per decision, for the self-check.
    const std::vector<std::string>& trace() const { return trace_; }

signals:
    void changed();
    // The new copy has started; the app should quit now.
    void relaunched();

private:
    void fetchFeed(const std::string& url, bool isFallback);
    void onFeed(const std::string& url, bool isFallback, HttpResult result);
    void onDownload(HttpResult result);
    void finishCheck();
    void setPhase(UpdatePhase phase, std::string message = {});
    void note(const std::string& line);
    void armAutomaticTimer();
    std::int64_t now() const;

    settings::DefaultsStore& store_;
    Config config_;
    UpdateStatus status_;
    UpdateHttp http_;
    QTimer automatic_;
    bool installWhenAvailable_ = false;
    bool checking_ = false;
    std::vector<std::string> trace_;
};

}  // namespace trotlet::updates
