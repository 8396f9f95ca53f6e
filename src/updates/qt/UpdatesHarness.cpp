#include "updates/qt/UpdatesHarness.h"

#include <cstdio>
#include <filesystem>
#include <functional>
#include <memory>
#include <string>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QEventLoop>
#include <QTemporaryDir>
#include <nlohmann/json.hpp>

#include "BuildInfo.h"
#include "platform/linux/AtomicFile.h"
#include "settings/SettingsKeys.h"
#include "updates/ReleaseNotes.h"
#include "updates/WhatsNew.h"
#include "updates/qt/DownloadCrypto.h"
#include "updates/qt/LocalFeedServer.h"
#include "updates/qt/ScriptedRelease.h"
#include "updates/qt/UpdateInstaller.h"
#include "updates/qt/UpdateStore.h"
#include "updates/qt/WhatsNewStore.h"

namespace fs = std::filesystem;

namespace trotlet::updates {

namespace {

using Json = nlohmann::ordered_json;
using Response = LocalFeedServer::Response;

bool waitUntil(const std::function<bool()>& done, int timeoutMs) {
    QElapsedTimer clock;
    clock.start();
    while (!done()) {
        if (clock.elapsed() > timeoutMs) return false;
        QCoreApplication::processEvents(QEventLoop::AllEvents | QEventLoop::WaitForMoreEvents, 20);
    }
    return true;
}

class Harness {
public:
    Harness() : current_{*Version::parse(build::version), std::stoll(build::buildNumber)} {}

    int run() {
        if (!setUp()) return finish();
        checkSessions();
        installSessions();
        whatsNewSessions();
        bundledNotes();
        return finish();
    }

private:
    void check(const std::string& name, bool ok, Json detail = nullptr) {
        Json c{{"check", name}, {"ok", ok}};
        if (!detail.is_null()) c["detail"] = std::move(detail);
        checks_.push_back(std::move(c));
        allOk_ = allOk_ && ok;
    }

    bool setUp() {
        keys_ = crypto::generateEd25519();
        foreignKeys_ = crypto::generateEd25519();
        check("testKeysGenerated", keys_ && foreignKeys_ && server_.isListening());
        if (!keys_ || !foreignKeys_ || !server_.isListening() || !home_.isValid()) return false;
        newer_ = current_;
        newer_.version.parts.resize(3, 0);
        newer_.version.parts[1] += 1;
        newer_.version.parts[2] = 0;
        newer_.build += 1;
        older_ = BuildId{*Version::parse("0.0.1"), 1};
        std::string error;
        auto release = makeScriptedRelease(scratch(), newer_, machineArch(),
                                           server_.url("/newer.tar.gz"), keys_->privateKey, &error);
        check("scriptedReleaseBuilt", release.has_value(),
              error.empty() ? Json(nullptr) : Json(error));
        if (!release) return false;
        newerRelease_ = *release;
        newerRelease_.release.page = "https://trotlet.github.io/releases/";
        server_.route("/newer.tar.gz",
                      Response{Response::Kind::normal, 200, newerRelease_.archive});
        return true;
    }

    std::string scratch() {
        const std::string dir = home_.path().toStdString() + "/scratch";
        fs::create_directories(dir);
        return dir;
    }

    FeedRelease plainRelease(const BuildId& id) {
        FeedRelease r;
        r.id = id;
        r.version = id.version.text();
        r.date = "2026-12-01";
        r.notes = {"Notes for " + r.version + "."};
        return r;
    }

    QByteArray feed(std::vector<FeedRelease> releases) {
        ReleaseFeed f;
        f.releases = std::move(releases);
        return QByteArray::fromStdString(encodeReleaseFeed(f));
    }

    struct Session {
        settings::DefaultsStore store = settings::DefaultsStore::ephemeral({});
        std::unique_ptr<UpdateStore> updates;
        std::vector<std::string> relaunched;
    };

    std::unique_ptr<Session> session(InstallChannel channel = InstallChannel::unmanaged,
                                     std::string fallback = {}) {
        auto s = std::make_unique<Session>();
        UpdateStore::Config config;
        config.feedURL = server_.url("/feed.json");
        config.fallbackURL = std::move(fallback);
        config.current = current_;
        config.arch = machineArch();
        config.channel = channel;
        config.installFolder = installFolder();
        config.publicKey = keys_->publicKey;
        config.feedLimits = HttpLimits{400, 2000, 1 << 20};
        config.downloadLimits = HttpLimits{1000, 10000, 64 << 20};
        config.clock = [] { return std::int64_t(1'800'000'000); };
        Session* raw = s.get();
        config.relaunch = [raw](const std::string& program) {
            raw->relaunched.push_back(program);
            return true;
        };
        s->updates = std::make_unique<UpdateStore>(s->store, std::move(config));
        return s;
    }

    UpdatePhase runCheck(Session& s) {
        s.updates->checkNow();
        waitUntil([&] { return s.updates->status().phase != UpdatePhase::checking; }, 5000);
        return s.updates->status().phase;
    }

    Json statusJson(const Session& s) {
        const auto& st = s.updates->status();
        Json j{{"phase", std::string(updatePhaseName(st.phase))}, {"message", st.message}};
        if (st.offer) j["offer"] = st.offer->release.version;
        return j;
    }

    void checkSessions() {
        struct Case {
            const char* name;
            Response response;
            UpdatePhase phase;
            std::string messagePart;
        };
        const std::vector<Case> cases = {
            {"noUpdate", {Response::Kind::normal, 200, feed({})}, UpdatePhase::upToDate, ""},
            {"newer",
             {Response::Kind::normal, 200, feed({plainRelease(older_), newerRelease_.release})},
             UpdatePhase::available,
             ""},
            {"same",
             {Response::Kind::normal, 200, feed({plainRelease(current_)})},
             UpdatePhase::upToDate,
             ""},
            {"older",
             {Response::Kind::normal, 200, feed({plainRelease(older_)})},
             UpdatePhase::upToDate,
             ""},
            {"malformedFeed",
             {Response::Kind::normal, 200, "{\"releases\": [{\"version\": "},
             UpdatePhase::checkFailed,
             "could not be read"},
            {"httpError404",
             {Response::Kind::normal, 404, "gone"},
             UpdatePhase::checkFailed,
             "HTTP 404"},
            {"httpError500",
             {Response::Kind::normal, 500, "oops"},
             UpdatePhase::checkFailed,
             "HTTP 500"},
            {"timeout", {Response::Kind::hang, 200, ""}, UpdatePhase::checkFailed, "in time"},
        };
        for (const auto& c : cases) {
            server_.clear();
            server_.route("/feed.json", c.response);
            auto s = session();
            const UpdatePhase phase = runCheck(*s);
            bool ok = phase == c.phase &&
                      s->updates->status().message.find(c.messagePart) != std::string::npos;
            if (c.phase == UpdatePhase::available) {
                const auto& offer = s->updates->status().offer;
                ok = ok && offer && offer->release.id == newer_ && offer->download &&
                     !s->updates->banner().notes.empty();
            }
            check(std::string("check.") + c.name, ok, statusJson(*s));
        }

        // The built-in feed fails; the fallback answers and the setting says so. The next
        // check that the first feed answers clears it again.
        server_.clear();
        server_.route("/feed.json", Response{Response::Kind::normal, 503, "busy"});
        server_.route("/fallback.json",
                      Response{Response::Kind::normal, 200, feed({newerRelease_.release})});
        {
            auto s = session(InstallChannel::unmanaged, server_.url("/fallback.json"));
            const bool fellBack =
                runCheck(*s) == UpdatePhase::available && s->updates->status().usingFallbackFeed;
            auto stored = s->store.object(settings::keys::usingFallbackFeed);
            server_.route("/feed.json", Response{Response::Kind::normal, 200, feed({})});
            const bool recovered =
                runCheck(*s) == UpdatePhase::upToDate && !s->updates->status().usingFallbackFeed;
            check("check.fallbackUsed",
                  fellBack && stored == settings::SettingValue(true) && recovered,
                  Json{{"trace", s->updates->trace()}});
        }

        // The override replaces the built-in feed, and only it is asked.
        server_.clear();
        server_.route("/feed.json", Response{Response::Kind::normal, 200, feed({})});
        server_.route("/override.json",
                      Response{Response::Kind::normal, 200, feed({newerRelease_.release})});
        {
            auto s = session(InstallChannel::unmanaged, server_.url("/fallback.json"));
            s->store.set(settings::SettingValue(server_.url("/override.json")),
                         settings::keys::feedURLOverride);
            const bool ok = runCheck(*s) == UpdatePhase::available &&
                            server_.requested() == std::vector<std::string>{"/override.json"};
            check("check.overrideHonoured", ok, Json{{"requested", server_.requested()}});
        }

        // Only HTTPS leaves the computer.
        {
            auto s = session();
            s->store.set(settings::SettingValue("http://example.com/feed.json"),
                         settings::keys::feedURLOverride);
            server_.clear();
            const bool ok = runCheck(*s) == UpdatePhase::checkFailed &&
                            server_.requested().empty() &&
                            s->updates->status().message.find("HTTPS") != std::string::npos;
            check("check.insecureAddressRefused", ok, statusJson(*s));
        }

        // A package install is told the package manager's command and never downloads.
        server_.clear();
        server_.route("/feed.json",
                      Response{Response::Kind::normal, 200, feed({newerRelease_.release})});
        {
            auto s = session(InstallChannel::package);
            runCheck(*s);
            const UpdateBanner banner = s->updates->banner();
            s->updates->installUpdate();
            const bool ok = banner.action == UpdateBanner::Action::showCommand &&
                            banner.command == packageUpdateCommand &&
                            s->updates->status().phase == UpdatePhase::refused &&
                            server_.requested() == std::vector<std::string>{"/feed.json"};
            check("package.toldTheCommand", ok,
                  Json{{"command", banner.command}, {"status", statusJson(*s)}});
        }
    }

    std::string installFolder() const { return home_.path().toStdString() + "/.local/opt/trotlet"; }
    std::string installedProgram() const { return installFolder() + "/trotlet"; }

    // A user-local install of this build, with a stand-in program.
    void resetInstall() {
        fs::remove_all(installFolder());
        fs::create_directories(installFolder());
        platform::writeAtomically(installedProgram(), scriptedProgram(current_));
        fs::permissions(installedProgram(), fs::perms::owner_all);
    }

    std::string installedBanner() {
        const auto text = platform::readWholeFile(installedProgram()).contents;
        const auto at = text.find("Trotlet ");
        return at == std::string::npos ? "" : text.substr(at, text.find(':', at) - at);
    }

    void installSessions() {
        const std::string before = scriptedProgram(current_);
        const std::string feedDoc = [&] { return feed({newerRelease_.release}).toStdString(); }();

        // The whole way: download, verify, replace, relaunch; the old copy is kept.
        resetInstall();
        server_.clear();
        server_.route("/feed.json",
                      Response{Response::Kind::normal, 200, QByteArray::fromStdString(feedDoc)});
        server_.route("/newer.tar.gz",
                      Response{Response::Kind::normal, 200, newerRelease_.archive});
        {
            auto s = session(InstallChannel::userLocal);
            s->updates->checkAndInstall();
            waitUntil(
                [&] {
                    return !s->relaunched.empty() ||
                           s->updates->status().phase == UpdatePhase::refused;
                },
                15000);
            const bool replaced =
                platform::readWholeFile(installedProgram()).contents == scriptedProgram(newer_);
            const bool kept =
                platform::readWholeFile(installFolder() + "/" + UpdateInstaller::previousName())
                    .contents == before;
            const bool ok = s->relaunched == std::vector<std::string>{installedProgram()} &&
                            replaced && kept &&
                            !fs::exists(installFolder() + "/" + UpdateInstaller::stagingName() +
                                        "/download.tar.gz");
            check("install.full", ok,
                  Json{{"status", statusJson(*s)},
                       {"trace", s->updates->trace()},
                       {"replaced", replaced},
                       {"previousKept", kept}});
            // The new copy, once started, lets the old one go.
            const bool finished =
                UpdateInstaller::finishPendingUpdate(installedProgram()) &&
                !fs::exists(installFolder() + "/" + UpdateInstaller::previousName());
            check("install.previousRemovedOnceStarted", finished);
        }

        // Each refusal changes nothing.
        struct Refusal {
            const char* name;
            std::function<void(FeedRelease&, Response&)> spoil;
            UpdateRefusal expected;
        };
        const std::vector<Refusal> refusals = {
            {"badSignature",
             [&](FeedRelease& r, Response&) {
                 r.downloads[0].signature = *crypto::signEd25519(
                     foreignKeys_->privateKey, newerRelease_.archive.toStdString());
             },
             UpdateRefusal::badSignature},
            {"badHash",
             [](FeedRelease& r, Response&) { r.downloads[0].sha256 = std::string(64, 'a'); },
             UpdateRefusal::wrongHash},
            // The server promises the whole file and closes after half of it.
            {"halfWritten",
             [](FeedRelease&, Response& response) {
                 response.kind = Response::Kind::truncate;
                 response.body = response.body.left(response.body.size() / 2);
             },
             UpdateRefusal::incompleteDownload},
            {"largerThanAnnounced", [](FeedRelease& r, Response&) { r.downloads[0].size -= 10; },
             UpdateRefusal::wrongSize},
        };
        for (const auto& refusal : refusals) {
            FeedRelease release = newerRelease_.release;
            Response download{Response::Kind::normal, 200, newerRelease_.archive};
            refusal.spoil(release, download);
            expectRefusal(std::string("refuse.") + refusal.name, release, download,
                          refusal.expected);
        }

        // The feed announces a newer build, but the archive holds this version's older build.
        std::string error;
        BuildId stale = current_;
        stale.build = current_.build - 1;
        BuildId announced = current_;
        announced.build = current_.build + 1;
        auto downgrade =
            makeScriptedRelease(scratch(), stale, machineArch(), server_.url("/stale.tar.gz"),
                                keys_->privateKey, &error);
        if (downgrade) {
            downgrade->release.id = announced;
            server_.route("/stale.tar.gz",
                          Response{Response::Kind::normal, 200, downgrade->archive});
            expectRefusal("refuse.downgrade", downgrade->release,
                          Response{Response::Kind::normal, 200, downgrade->archive},
                          UpdateRefusal::downgrade, "/stale.tar.gz");
        } else {
            check("refuse.downgrade", false, error);
        }
    }

    void expectRefusal(const std::string& name, const FeedRelease& release,
                       const Response& download, UpdateRefusal expected,
                       const std::string& path = "/newer.tar.gz") {
        resetInstall();
        server_.clear();
        server_.route("/feed.json", Response{Response::Kind::normal, 200, feed({release})});
        server_.route(path, download);
        auto s = session(InstallChannel::userLocal);
        s->updates->checkAndInstall();
        waitUntil(
            [&] {
                const auto phase = s->updates->status().phase;
                return phase == UpdatePhase::refused || phase == UpdatePhase::checkFailed ||
                       !s->relaunched.empty();
            },
            15000);
        const std::string expectedText = refusalText(expected);
        const std::string& message = s->updates->status().message;
        const bool saidWhy = message.compare(0, expectedText.size(), expectedText) == 0;
        const bool unchanged =
            platform::readWholeFile(installedProgram()).contents == scriptedProgram(current_) &&
            !fs::exists(installFolder() + "/" + UpdateInstaller::previousName()) &&
            !fs::exists(installFolder() + "/" + UpdateInstaller::stagingName());
        check(name,
              s->updates->status().phase == UpdatePhase::refused && saidWhy && unchanged &&
                  s->relaunched.empty(),
              Json{{"status", statusJson(*s)}, {"unchanged", unchanged}});
    }

    void whatsNewSessions() {
        const std::vector<ReleaseNote> notes = {{"0.3.0", "2026-12-20", {"Three."}},
                                                {"0.2.0", "2026-12-10", {"Two."}},
                                                {"0.1.0", "2026-11-22", {"One."}}};
        const Version v2 = *Version::parse("0.2.0"), v3 = *Version::parse("0.3.0");
        const std::int64_t day = 24 * 60 * 60, t0 = 1'800'000'000;
        auto versions = [](const std::vector<ReleaseNote>& n) {
            std::vector<std::string> out;
            for (const auto& note : n) out.push_back(note.version);
            return out;
        };

        auto first = whatsNewAtLaunch({}, v2, t0, notes);
        check("whatsNew.firstLaunch", first.notes.empty() &&
                                          first.decision == WhatsNewDecision::firstLaunch &&
                                          first.state.lastLaunchedVersion == "0.2.0");

        WhatsNewState fromOne;
        fromOne.lastLaunchedVersion = "0.1.0";
        auto upgrade = whatsNewAtLaunch(fromOne, v3, t0, notes);
        check("whatsNew.upgrade",
              versions(upgrade.notes) == std::vector<std::string>{"0.3.0", "0.2.0"} &&
                  upgrade.state.pendingVersion == "0.3.0",
              versions(upgrade.notes));

        auto again = whatsNewAtLaunch(upgrade.state, v3, t0 + 13 * day, notes);
        check("whatsNew.stillPendingOnDay13", again.notes.size() == 2);
        auto expired = whatsNewAtLaunch(upgrade.state, v3, t0 + 14 * day, notes);
        check("whatsNew.expiredOnDay14", expired.notes.empty() &&
                                             expired.decision == WhatsNewDecision::expired &&
                                             !expired.state.pendingVersion);
        auto dismissed = whatsNewAtLaunch(whatsNewDismissed(upgrade.state), v3, t0 + day, notes);
        check("whatsNew.dismissed",
              dismissed.notes.empty() && dismissed.decision == WhatsNewDecision::sameVersion);
        auto downgrade = whatsNewAtLaunch(upgrade.state, v2, t0 + day, notes);
        check("whatsNew.downgrade", downgrade.notes.empty() &&
                                        downgrade.decision == WhatsNewDecision::downgrade &&
                                        !downgrade.state.pendingVersion);

        // Through the store: the keys the app keeps, in an in-memory store.
        auto store = settings::DefaultsStore::ephemeral({});
        store.set(settings::SettingValue("0.1.0"), settings::keys::lastLaunchedVersion);
        WhatsNewStore launch(store, v2, t0, notes, {});
        const bool offered = launch.notes().size() == 1 &&
                             store.string(settings::keys::whatsNewVersion, "") == "0.2.0" &&
                             !store.string(settings::keys::whatsNewSince, "").empty();
        launch.dismiss();
        const bool removed = !store.object(settings::keys::whatsNewVersion) &&
                             !store.object(settings::keys::whatsNewSince) &&
                             store.string(settings::keys::lastLaunchedVersion, "") == "0.2.0";
        check("whatsNew.storeKeys", offered && removed);
        check(
            "whatsNew.qaSwitches",
            !whatsNewAtLaunch(fromOne, v3, t0, notes, WhatsNewOverride::parse("0")).notes.size() &&
                versions(whatsNewAtLaunch(upgrade.state, v3, t0 + 20 * day, notes,
                                          WhatsNewOverride::parse("1"))
                             .notes) == std::vector<std::string>{"0.3.0"} &&
                whatsNewAtLaunch({}, v3, t0, notes, WhatsNewOverride::parse("0.1.0"))
                        .notes.size() == 2);
    }

    void bundledNotes() {
        const auto problems = bundledReleaseNotesProblems(build::version);
        check("notes.bundled", problems.empty() && !bundledReleaseNotes().empty(),
              problems.empty() ? Json(nullptr) : Json(problems));
    }

    int finish() {
        Json out{{"ok", allOk_}, {"version", build::version}, {"checks", checks_}};
        const std::string text = out.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
        std::fwrite(text.data(), 1, text.size(), stdout);
        std::fflush(stdout);
        return allOk_ ? 0 : 1;
    }

    BuildId current_;
    BuildId newer_;
    BuildId older_;
    std::optional<crypto::KeyPair> keys_, foreignKeys_;
    QTemporaryDir home_;
    LocalFeedServer server_;
    ScriptedRelease newerRelease_;
    Json checks_ = Json::array();
    bool allOk_ = true;
};

}  // namespace

int runUpdatesHarness() {
    Harness harness;
    return harness.run();
}

}  // namespace trotlet::updates
