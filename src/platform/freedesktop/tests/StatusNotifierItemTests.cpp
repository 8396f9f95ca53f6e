#include "platform/freedesktop/StatusNotifierItem.h"
#include "platform/freedesktop/StatusNotifierItemFrameCache.h"
#include "platform/freedesktop/StatusNotifierItemTypes.h"

#include "FreedesktopTestSupport.h"

#include <QDBusArgument>
#include <QDBusConnectionInterface>
#include <QDBusReply>
#include <QRegularExpression>

#include <gtest/gtest.h>

namespace trotlet::platform {
namespace {

using testing::FakeWatcher;
using testing::PrivateBus;
using testing::SignalRecorder;
using testing::waitUntil;

const QString kInterface = QStringLiteral("org.kde.StatusNotifierItem");

QImage solidFrame(QRgb color, int width = 22, int height = 22) {
    QImage image(width, height, QImage::Format_ARGB32);
    image.fill(color);
    return image;
}

StatusNotifierIconPixmapList demarshalPixmaps(const QVariant& value) {
    StatusNotifierIconPixmapList pixmaps;
    value.value<QDBusArgument>() >> pixmaps;
    return pixmaps;
}

class StatusNotifierItemTest : public ::testing::Test {
protected:
    void SetUp() override {
        testing::ensureApplication();
        ASSERT_TRUE(bus.isRunning()) << "dbus-daemon did not start";
        itemBus = bus.connect(QStringLiteral("item"));
        hostBus = bus.connect(QStringLiteral("host"));
        ASSERT_TRUE(itemBus.isConnected());
        ASSERT_TRUE(hostBus.isConnected());
    }

    bool startWatcher() {
        watcher = std::make_unique<FakeWatcher>();
        return watcher->start(bus.connect(QStringLiteral("watcher")));
    }

    QVariantMap getAll(const QString& service) {
        const QDBusMessage reply = testing::call(hostBus, service, StatusNotifierItem::kItemPath,
                                                 QStringLiteral("org.freedesktop.DBus.Properties"),
                                                 QStringLiteral("GetAll"), {kInterface});
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
        if (reply.arguments().isEmpty()) return {};
        QVariantMap map;
        reply.arguments().first().value<QDBusArgument>() >> map;
        return map;
    }

    PrivateBus bus;
    QDBusConnection itemBus{QString()};
    QDBusConnection hostBus{QString()};
    std::unique_ptr<FakeWatcher> watcher;
};

TEST(StatusNotifierIconPixmap, PixelsTravelAsStraightArgbInNetworkOrder) {
    testing::ensureApplication();
    QImage image(2, 1, QImage::Format_ARGB32);
    image.setPixel(0, 0, qRgba(0x11, 0x22, 0x33, 0x80));  // half-transparent: must not premultiply
    image.setPixel(1, 0, qRgba(0xff, 0x00, 0x7f, 0xff));
    const auto pixmap = StatusNotifierIconPixmap::fromImage(image);
    ASSERT_EQ(pixmap.width, 2);
    ASSERT_EQ(pixmap.height, 1);
    const QByteArray expected("\x80\x11\x22\x33\xff\xff\x00\x7f", 8);
    EXPECT_EQ(pixmap.bytes, expected);
    EXPECT_EQ(pixmap.toImage().pixel(0, 0), image.pixel(0, 0));

    // A premultiplied source is converted back to straight alpha before sending.
    const auto fromPremultiplied =
        StatusNotifierIconPixmap::fromImage(image.convertToFormat(QImage::Format_ARGB32_Premultiplied));
    EXPECT_EQ(fromPremultiplied.toImage().pixel(1, 0), image.pixel(1, 0));
    EXPECT_EQ(qAlpha(fromPremultiplied.toImage().pixel(0, 0)), 0x80);

    EXPECT_TRUE(StatusNotifierIconPixmap::fromImage(QImage()).bytes.isEmpty());
}

TEST(StatusNotifierItemFrameCache, KeepsTheMostRecentlyUsedFrames) {
    StatusNotifierItemFrameCache cache(2);
    auto frame = [](char c) {
        return StatusNotifierIconPixmapList{StatusNotifierIconPixmap{1, 1, QByteArray(4, c)}};
    };
    cache.insert(QStringLiteral("a"), frame('a'));
    cache.insert(QStringLiteral("b"), frame('b'));
    ASSERT_TRUE(cache.find(QStringLiteral("a")));  // a is now the most recent
    cache.insert(QStringLiteral("c"), frame('c'));  // evicts b
    EXPECT_FALSE(cache.find(QStringLiteral("b")));
    ASSERT_TRUE(cache.find(QStringLiteral("a")));
    EXPECT_EQ(cache.find(QStringLiteral("c"))->first().bytes, QByteArray(4, 'c'));
    EXPECT_EQ(cache.size(), 2);
    EXPECT_EQ(cache.bytes(), 8);
    cache.insert(QStringLiteral("c"), frame('C'));  // replacing does not grow
    EXPECT_EQ(cache.size(), 2);
    EXPECT_EQ(cache.find(QStringLiteral("c"))->first().bytes, QByteArray(4, 'C'));
}

TEST_F(StatusNotifierItemTest, RegistersWithTheWatcherUnderAUniqueName) {
    ASSERT_TRUE(startWatcher());
    StatusNotifierItem item(itemBus);
    testing::Spy available(&item, &TrayItem::hostAvailableChanged);
    ASSERT_TRUE(item.isExported());
    EXPECT_TRUE(QRegularExpression(QStringLiteral("^org\\.kde\\.StatusNotifierItem-\\d+-\\d+$"))
                    .match(item.serviceName())
                    .hasMatch())
        << item.serviceName().toStdString();
    ASSERT_TRUE(waitUntil([&] { return item.isRegisteredWithWatcher(); }));
    EXPECT_EQ(watcher->registered, QStringList{item.serviceName()});
    EXPECT_EQ(watcher->senders, QStringList{itemBus.baseService()});
    EXPECT_EQ(available.count(), 1);

    StatusNotifierItem second(itemBus);
    EXPECT_NE(second.serviceName(), item.serviceName());
    EXPECT_TRUE(hostBus.interface()->isServiceRegistered(item.serviceName()).value());
}

TEST_F(StatusNotifierItemTest, RegistersAgainWhenTheWatcherComesBack) {
    StatusNotifierItem item(itemBus);
    testing::Spy available(&item, &TrayItem::hostAvailableChanged);
    testing::spinFor(100);
    EXPECT_FALSE(item.isRegisteredWithWatcher());  // no watcher yet

    ASSERT_TRUE(startWatcher());
    ASSERT_TRUE(waitUntil([&] { return item.isRegisteredWithWatcher(); }));
    EXPECT_EQ(watcher->registered.size(), 1);

    // The panel restarts: its watcher leaves the bus and a new one arrives.
    watcher.reset();
    bus.disconnect(QStringLiteral("watcher"));
    ASSERT_TRUE(waitUntil([&] { return !item.isRegisteredWithWatcher(); }));
    ASSERT_TRUE(startWatcher());
    ASSERT_TRUE(waitUntil([&] { return item.isRegisteredWithWatcher(); }));
    EXPECT_EQ(watcher->registered, QStringList{item.serviceName()});
    // up, down, up again
    EXPECT_EQ(available.count(), 3);
}

TEST_F(StatusNotifierItemTest, SendsAFrameOnlyWhenItsKeyChanges) {
    StatusNotifierItem item(itemBus);
    SignalRecorder recorder(hostBus, item.serviceName(), StatusNotifierItem::kItemPath, kInterface);

    item.setFrame(solidFrame(qRgba(255, 0, 0, 255)), QStringLiteral("run-0"));
    ASSERT_TRUE(waitUntil([&] { return recorder.count(QStringLiteral("NewIcon")) == 1; }));
    auto pixmaps = demarshalPixmaps(getAll(item.serviceName()).value(QStringLiteral("IconPixmap")));
    ASSERT_EQ(pixmaps.size(), 1);
    EXPECT_EQ(pixmaps[0].width, 22);
    EXPECT_EQ(pixmaps[0].toImage().pixel(5, 5), qRgba(255, 0, 0, 255));

    // Same key: the same pixels, so nothing goes to the host even if the image object differs.
    item.setFrame(solidFrame(qRgba(255, 0, 0, 255)), QStringLiteral("run-0"));
    testing::spinFor(150);
    EXPECT_EQ(recorder.count(QStringLiteral("NewIcon")), 1);

    item.setFrame(solidFrame(qRgba(0, 0, 255, 255), 30, 22), QStringLiteral("run-1"));
    ASSERT_TRUE(waitUntil([&] { return recorder.count(QStringLiteral("NewIcon")) == 2; }));
    pixmaps = demarshalPixmaps(getAll(item.serviceName()).value(QStringLiteral("IconPixmap")));
    ASSERT_EQ(pixmaps.size(), 1);
    EXPECT_EQ(pixmaps[0].width, 30);
    EXPECT_EQ(pixmaps[0].toImage().pixel(29, 21), qRgba(0, 0, 255, 255));

    // Looping back to a shown frame reuses its encoding, and every property read is a copy.
    item.setFrame(solidFrame(qRgba(255, 0, 0, 255)), QStringLiteral("run-0"));
    ASSERT_TRUE(waitUntil([&] { return recorder.count(QStringLiteral("NewIcon")) == 3; }));
    for (int i = 0; i < 3; ++i) getAll(item.serviceName());
    EXPECT_EQ(item.frameCache().misses(), 2u);
    EXPECT_EQ(item.frameCache().hits(), 1u);
    EXPECT_EQ(item.iconsSent(), 3u);
    EXPECT_EQ(item.currentFrameKey(), QStringLiteral("run-0"));
}

TEST_F(StatusNotifierItemTest, PublishesTheFixedIdentityAndTheMenuPath) {
    StatusNotifierItem item(itemBus);
    const QVariantMap all = getAll(item.serviceName());
    EXPECT_EQ(all.value(QStringLiteral("Id")).toString(), QStringLiteral("trotlet"));
    EXPECT_EQ(all.value(QStringLiteral("Title")).toString(), QStringLiteral("Trotlet"));
    EXPECT_EQ(all.value(QStringLiteral("Category")).toString(), QStringLiteral("ApplicationStatus"));
    EXPECT_EQ(all.value(QStringLiteral("Status")).toString(), QStringLiteral("Active"));
    EXPECT_FALSE(all.value(QStringLiteral("ItemIsMenu")).toBool());
    EXPECT_EQ(all.value(QStringLiteral("Menu")).value<QDBusObjectPath>().path(), StatusNotifierItem::kMenuPath);
    EXPECT_TRUE(demarshalPixmaps(all.value(QStringLiteral("IconPixmap"))).isEmpty());

    SignalRecorder recorder(hostBus, item.serviceName(), StatusNotifierItem::kItemPath, kInterface);
    item.setVisible(false);
    ASSERT_TRUE(waitUntil([&] { return recorder.count(QStringLiteral("NewStatus")) == 1; }));
    EXPECT_EQ(recorder.signals_.last().arguments.value(0).toString(), QStringLiteral("Passive"));
    item.setVisible(false);
    testing::spinFor(50);
    EXPECT_EQ(recorder.count(QStringLiteral("NewStatus")), 1);
}

TEST_F(StatusNotifierItemTest, CarriesTheTickerAsLabelOrInsideTheIcon) {
    StatusNotifierItem item(itemBus);
    SignalRecorder recorder(hostBus, item.serviceName(), StatusNotifierItem::kItemPath, kInterface);
    item.setFrame(solidFrame(qRgba(0, 128, 0, 255)), QStringLiteral("sit-0"));

    item.setLabel(QStringLiteral("37%"), QStringLiteral("100%"));
    ASSERT_TRUE(waitUntil([&] { return recorder.count(QStringLiteral("XAyatanaNewLabel")) == 1; }));
    const auto& signal = recorder.signals_.last();
    EXPECT_EQ(signal.arguments.value(0).toString(), QStringLiteral("37%"));
    EXPECT_EQ(signal.arguments.value(1).toString(), QStringLiteral("100%"));
    QVariantMap all = getAll(item.serviceName());
    EXPECT_EQ(all.value(QStringLiteral("XAyatanaLabel")).toString(), QStringLiteral("37%"));
    EXPECT_EQ(all.value(QStringLiteral("XAyatanaLabelGuide")).toString(), QStringLiteral("100%"));
    item.setLabel(QStringLiteral("37%"), QStringLiteral("100%"));
    testing::spinFor(50);
    EXPECT_EQ(recorder.count(QStringLiteral("XAyatanaNewLabel")), 1);

    // Drawn into the icon: the label property empties (never shown twice) and the icon widens
    // by the same amount for every reading of the same guide.
    const int iconsBefore = recorder.count(QStringLiteral("NewIcon"));
    item.setLabelInIcon(true);
    ASSERT_TRUE(waitUntil([&] { return recorder.count(QStringLiteral("NewIcon")) == iconsBefore + 1; }));
    all = getAll(item.serviceName());
    EXPECT_TRUE(all.value(QStringLiteral("XAyatanaLabel")).toString().isEmpty());
    const auto wide = demarshalPixmaps(all.value(QStringLiteral("IconPixmap")));
    ASSERT_EQ(wide.size(), 1);
    EXPECT_GT(wide[0].width, 22);
    EXPECT_EQ(wide[0].height, 22);
    item.setLabel(QStringLiteral("88%"), QStringLiteral("100%"));
    ASSERT_TRUE(waitUntil([&] { return recorder.count(QStringLiteral("NewIcon")) == iconsBefore + 2; }));
    const auto wide88 = demarshalPixmaps(getAll(item.serviceName()).value(QStringLiteral("IconPixmap")));
    EXPECT_EQ(wide88[0].width, wide[0].width);
    EXPECT_NE(wide88[0].bytes, wide[0].bytes);

    item.setToolTip(QStringLiteral("Trotlet"), QStringLiteral("Running at 37% CPU"));
    ASSERT_TRUE(waitUntil([&] { return recorder.count(QStringLiteral("NewToolTip")) == 1; }));
    StatusNotifierToolTip toolTip;
    getAll(item.serviceName()).value(QStringLiteral("ToolTip")).value<QDBusArgument>() >> toolTip;
    EXPECT_EQ(toolTip.title, QStringLiteral("Trotlet"));
    EXPECT_EQ(toolTip.description, QStringLiteral("Running at 37% CPU"));
}

TEST_F(StatusNotifierItemTest, ForwardsClicksScrollsAndTokensFromTheHost) {
    StatusNotifierItem item(itemBus);
    testing::Spy activated(&item, &TrayItem::activated);
    testing::Spy secondary(&item, &TrayItem::secondaryActivated);
    testing::Spy scrolled(&item, &TrayItem::scrolled);
    testing::Spy token(&item, &TrayItem::activationTokenProvided);

    struct Case {
        const char* method;
        QVariantList args;
    };
    const Case cases[] = {
        {"Activate", {120, 4}},
        {"SecondaryActivate", {300, 10}},
        {"Scroll", {-120, QStringLiteral("horizontal")}},
        {"ProvideXdgActivationToken", {QStringLiteral("token-1")}},
    };
    for (const Case& c : cases) {
        const QDBusMessage reply = testing::call(hostBus, item.serviceName(), StatusNotifierItem::kItemPath,
                                                 kInterface, QString::fromLatin1(c.method), c.args);
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << c.method << ": " << reply.errorMessage().toStdString();
    }
    ASSERT_EQ(activated.count(), 1);
    EXPECT_EQ(std::get<0>(activated.at(0)), QPoint(120, 4));
    ASSERT_EQ(secondary.count(), 1);
    EXPECT_EQ(std::get<0>(secondary.at(0)), QPoint(300, 10));
    ASSERT_EQ(scrolled.count(), 1);
    EXPECT_EQ(std::get<0>(scrolled.at(0)), -120);
    EXPECT_EQ(std::get<1>(scrolled.at(0)), Qt::Horizontal);
    ASSERT_EQ(token.count(), 1);
    EXPECT_EQ(std::get<0>(token.at(0)), QStringLiteral("token-1"));
}

TEST_F(StatusNotifierItemTest, FactoryPrefersTheWatcherAndHonoursTheOverride) {
    qunsetenv("TROTLET_TRAY");
    // No watcher and no XEmbed tray (offscreen): still a StatusNotifierItem, which registers
    // as soon as a panel starts.
    auto waiting = TrayItem::create(itemBus);
    EXPECT_EQ(waiting->kind(), TrayItem::Kind::statusNotifier);
    waiting.reset();

    ASSERT_TRUE(startWatcher());
    auto item = TrayItem::create(itemBus);
    EXPECT_EQ(item->kind(), TrayItem::Kind::statusNotifier);
    ASSERT_TRUE(waitUntil([&] { return watcher->registered.size() == 1; }));

    qputenv("TROTLET_TRAY", "xembed");
    auto forced = TrayItem::create(itemBus);
    qunsetenv("TROTLET_TRAY");
    EXPECT_EQ(forced->kind(), TrayItem::Kind::xembed);
    // The fallback keeps the same contract: a repeated key is not sent again.
    forced->setFrame(solidFrame(qRgba(1, 2, 3, 255)), QStringLiteral("a"));
    forced->setFrame(solidFrame(qRgba(1, 2, 3, 255)), QStringLiteral("a"));
    EXPECT_EQ(forced->currentFrameKey(), QStringLiteral("a"));
    forced->setLabelInIcon(true);
    forced->setLabel(QStringLiteral("5%"), QStringLiteral("100%"));
    EXPECT_TRUE(forced->label().isEmpty());
}

}  // namespace
}  // namespace trotlet::platform
