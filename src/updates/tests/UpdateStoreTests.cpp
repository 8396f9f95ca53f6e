// A whole update against a release server on 127.0.0.1 in a throwaway home, and the
// downloads the installer must refuse without changing anything.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QTemporaryDir>

#include <filesystem>

#include "platform/linux/AtomicFile.h"
#include "settings/SettingsKeys.h"
#include "updates/qt/DownloadCrypto.h"
#include "updates/qt/LocalFeedServer.h"
#include "updates/qt/ScriptedRelease.h"
#include "updates/qt/UpdateInstaller.h"
#include "updates/qt/UpdateStore.h"

namespace fs = std::filesystem;
using namespace trotlet;
using namespace trotlet::updates;
using Response = LocalFeedServer::Response;

namespace {

// The event loop the client and the server share, there before any fixture is built.
class QtApp : public ::testing::Environment {
public:
    void SetUp() override {
        static int argc = 1;
        static char name[] = "updates_tests";
        static char* argv[] = {name, nullptr};
        if (!QCoreApplication::instance()) new QCoreApplication(argc, argv);
    }
};
[[maybe_unused]] auto* const qtApp = ::testing::AddGlobalTestEnvironment(new QtApp);

bool spinUntil(const std::function<bool()>& done, int ms = 10000) {
    QElapsedTimer clock;
    clock.start();
    while (!done() && clock.elapsed() < ms)
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    return done();
}

BuildId id(const char* version, std::int64_t build) {
    return BuildId{*Version::parse(version), build};
}

class UpdateFixture : public ::testing::Test {
protected:
    void SetUp() override {
        ASSERT_TRUE(home.isValid());
        keys = *crypto::generateEd25519();
        folder = home.path().toStdString() + "/.local/opt/trotlet";
        fs::create_directories(folder);
        platform::writeAtomically(folder + "/trotlet", scriptedProgram(current));
        fs::permissions(folder + "/trotlet", fs::perms::owner_all);
        std::string error;
        auto made = makeScriptedRelease(home.path().toStdString(), newer, "x86_64",
                                        server.url("/t.tar.gz"), keys.privateKey, &error);
        ASSERT_TRUE(made) << error;
        release = *made;
    }

    std::string installed() { return platform::readWholeFile(folder + "/trotlet").contents; }
    bool untouched() {
        return installed() == scriptedProgram(current) &&
               !fs::exists(folder + "/trotlet.previous") && !fs::exists(folder + "/.update");
    }

    QTemporaryDir home;
    LocalFeedServer server;
    crypto::KeyPair keys;
    std::string folder;
    BuildId current = id("0.1.0", 100);
    BuildId newer = id("0.2.0", 120);
    ScriptedRelease release;
};

TEST_F(UpdateFixture, DownloadsVerifiesReplacesAndRelaunches) {
    ReleaseFeed feed;
    feed.releases = {release.release};
    server.route("/feed.json", Response{Response::Kind::normal, 200,
                                        QByteArray::fromStdString(encodeReleaseFeed(feed))});
    server.route("/t.tar.gz", Response{Response::Kind::normal, 200, release.archive});

    auto store = settings::DefaultsStore::ephemeral({});
    std::vector<std::string> relaunched;
    UpdateStore::Config config;
    config.feedURL = server.url("/feed.json");
    config.fallbackURL.clear();
    config.current = current;
    config.arch = "x86_64";
    config.channel = InstallChannel::userLocal;
    config.installFolder = folder;
    config.publicKey = keys.publicKey;
    config.feedLimits = HttpLimits{2000, 5000, 1 << 20};
    config.relaunch = [&](const std::string& program) {
        relaunched.push_back(program);
        return true;
    };
    UpdateStore updates(store, config);
    bool quitAsked = false;
    QObject::connect(&updates, &UpdateStore::relaunched, [&] { quitAsked = true; });
    std::vector<UpdatePhase> phases;
    QObject::connect(&updates, &UpdateStore::changed, [&] {
        if (phases.empty() || phases.back() != updates.status().phase)
            phases.push_back(updates.status().phase);
    });

    updates.checkAndInstall();
    ASSERT_TRUE(spinUntil([&] {
        return quitAsked || updates.status().phase == UpdatePhase::refused;
    })) << updates.status().message;
    EXPECT_EQ(relaunched, std::vector<std::string>{folder + "/trotlet"});
    EXPECT_EQ(phases, (std::vector<UpdatePhase>{UpdatePhase::checking, UpdatePhase::available,
                                                UpdatePhase::downloading, UpdatePhase::installing,
                                                UpdatePhase::relaunching}));
    EXPECT_EQ(installed(), scriptedProgram(newer));
    EXPECT_EQ(platform::readWholeFile(folder + "/trotlet.previous").contents,
              scriptedProgram(current));
    EXPECT_TRUE(fs::exists(folder + "/README.md"));
    EXPECT_TRUE(store.object(settings::keys::lastUpdateCheck).has_value());

    // The relaunched copy lets the old one go.
    EXPECT_TRUE(UpdateInstaller::finishPendingUpdate(folder + "/trotlet"));
    EXPECT_FALSE(fs::exists(folder + "/trotlet.previous"));
    EXPECT_FALSE(fs::exists(folder + "/.update"));
}

TEST_F(UpdateFixture, RefusalsChangeNothing) {
    auto foreign = *crypto::generateEd25519();
    const std::string bytes = release.archive.toStdString();
    BuildId stale = current;
    stale.build -= 1;
    auto staleRelease = makeScriptedRelease(home.path().toStdString(), stale, "x86_64",
                                            server.url("/s.tar.gz"), keys.privateKey, nullptr);
    ASSERT_TRUE(staleRelease);
    struct Case {
        const char* name;
        QByteArray archive;
        std::function<void(UpdateOffer&)> spoil;
        UpdateRefusal refusal;
    };
    const std::vector<Case> cases = {
        {"foreign signature", release.archive,
         [&](UpdateOffer& o) {
             o.release.downloads[0].signature = *crypto::signEd25519(foreign.privateKey, bytes);
         },
         UpdateRefusal::badSignature},
        {"wrong hash", release.archive,
         [](UpdateOffer& o) { o.release.downloads[0].sha256 = std::string(64, '0'); },
         UpdateRefusal::wrongHash},
        {"half written", release.archive.left(release.archive.size() / 2), [](UpdateOffer&) {},
         UpdateRefusal::incompleteDownload},
        {"not newer than this copy", release.archive,
         [&](UpdateOffer& o) { o.release.id = current; }, UpdateRefusal::downgrade},
        // Announced as a newer build of this version; the archive holds an older build.
        {"older build inside", staleRelease->archive,
         [&](UpdateOffer& o) {
             o.release = staleRelease->release;
             o.release.id = BuildId{current.version, current.build + 5};
         },
         UpdateRefusal::downgrade},
        {"not an archive", QByteArray("just text"),
         [&](UpdateOffer& o) {
             auto& d = o.release.downloads[0];
             d.size = 9;
             d.sha256 = crypto::sha256Hex("just text");
             d.signature = *crypto::signEd25519(keys.privateKey, "just text");
         },
         UpdateRefusal::unreadableArchive},
    };
    UpdateInstaller installer(folder, keys.publicKey, current);
    for (const auto& c : cases) {
        UpdateOffer offer{release.release, std::nullopt};
        c.spoil(offer);
        offer.download = offer.release.downloads[0];
        const InstallOutcome out = installer.install(c.archive, offer);
        EXPECT_FALSE(out.ok) << c.name;
        ASSERT_TRUE(out.refusal) << c.name;
        EXPECT_EQ(refusalName(*out.refusal), refusalName(c.refusal))
            << c.name << ": " << out.message;
        EXPECT_TRUE(untouched()) << c.name;
    }
}

}  // namespace
