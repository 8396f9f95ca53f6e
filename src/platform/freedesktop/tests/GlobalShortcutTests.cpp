#include "platform/freedesktop/GlobalShortcut.h"
#include "platform/freedesktop/GlobalShortcutKeys.h"

#include "FreedesktopTestSupport.h"

#include <QDBusArgument>
#include <QDBusObjectPath>
#include <QDBusVirtualObject>

#include <gtest/gtest.h>

#include <set>

namespace trotlet::platform {
namespace {

TEST(GlobalShortcutKeys, TranslatesCarbonCodesAndModifiers) {
    const struct {
        int keyCode;
        int modifiers;
        unsigned long keysym;
        unsigned int x11;
        const char* trigger;
        const char* display;
    } cases[] = {
        {35, 2304, 0x70, 64 | 8, "LOGO+ALT+p", "Super+Alt+P"},  // the default
        {0, 256, 0x61, 64, "LOGO+a", "Super+A"},
        {12, 4096 | 512, 0x71, 4 | 1, "CTRL+SHIFT+q", "Ctrl+Shift+Q"},
        {18, 2048, 0x31, 8, "ALT+1", "Alt+1"},
        {29, 256 | 4096, 0x30, 64 | 4, "LOGO+CTRL+0", "Super+Ctrl+0"},
        {49, 4096 | 2048, 0x20, 4 | 8, "CTRL+ALT+space", "Ctrl+Alt+Space"},
        {122, 256, 0xffbe, 64, "LOGO+F1", "Super+F1"},
        {111, 512 | 2048, 0xffc9, 8 | 1, "ALT+SHIFT+F12", "Alt+Shift+F12"},
        {126, 256 | 512 | 2048 | 4096, 0xff52, 64 | 4 | 8 | 1, "LOGO+CTRL+ALT+SHIFT+Up", "Super+Ctrl+Alt+Shift+Up"},
        {27, 2048, 0x2d, 8, "ALT+minus", "Alt+-"},
        {53, 4096, 0xff1b, 4, "CTRL+Escape", "Ctrl+Esc"},
    };
    for (const auto& c : cases) {
        const auto keys = GlobalShortcutKeys::fromCarbon(c.keyCode, c.modifiers);
        ASSERT_TRUE(keys) << c.keyCode;
        EXPECT_EQ(keys->keysym, c.keysym) << c.keyCode;
        EXPECT_EQ(keys->x11Modifiers, c.x11) << c.keyCode;
        EXPECT_EQ(keys->portalTrigger, c.trigger);
        EXPECT_EQ(keys->displayText, c.display);
    }
}

TEST(GlobalShortcutKeys, RefusesUnknownKeysAndBareKeys) {
    EXPECT_FALSE(GlobalShortcutKeys::fromCarbon(35, 0));       // P alone would steal the key
    EXPECT_FALSE(GlobalShortcutKeys::fromCarbon(35, 1 << 16)); // Caps Lock is not a modifier here
    EXPECT_FALSE(GlobalShortcutKeys::fromCarbon(10, 256));     // ISO section key: not in the table
    EXPECT_FALSE(GlobalShortcutKeys::fromCarbon(-1, 256));
    EXPECT_FALSE(GlobalShortcutKeys::fromCarbon(200, 256));
}

TEST(GlobalShortcutKeys, EveryLetterAndDigitHasExactlyOneCode) {
    std::set<unsigned long> seen;
    for (int code = 0; code < 128; ++code) {
        if (const auto keys = GlobalShortcutKeys::fromCarbon(code, 256)) {
            EXPECT_TRUE(seen.insert(keys->keysym).second) << "keysym twice, code " << code;
        }
    }
    for (unsigned long c = 'a'; c <= 'z'; ++c) EXPECT_TRUE(seen.count(c)) << char(c);
    for (unsigned long c = '0'; c <= '9'; ++c) EXPECT_TRUE(seen.count(c)) << char(c);
}

// The GlobalShortcuts portal as the desktop runs it: each call answers with a Request path and
// then a Response signal on that path; `approve` false plays a user who declines.
class FakeShortcutsPortal : public QDBusVirtualObject {
public:
    explicit FakeShortcutsPortal(QDBusConnection bus) : bus_(bus) {}
    bool start() {
        return bus_.registerVirtualObject(QStringLiteral("/org/freedesktop/portal/desktop"), this) &&
               bus_.registerService(QStringLiteral("org.freedesktop.portal.Desktop"));
    }
    QString introspect(const QString&) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override {
        if (message.interface() != QLatin1String("org.freedesktop.portal.GlobalShortcuts")) return false;
        QString sender = message.service().mid(1);
        sender.replace(QLatin1Char('.'), QLatin1Char('_'));
        const QVariantMap options = qdbus_cast<QVariantMap>(message.arguments().last());
        const QString request = QStringLiteral("/org/freedesktop/portal/desktop/request/%1/%2")
                                    .arg(sender, options.value(QStringLiteral("handle_token")).toString());
        QVariantMap results;
        if (message.member() == QLatin1String("CreateSession")) {
            session = QStringLiteral("/org/freedesktop/portal/desktop/session/%1/%2")
                          .arg(sender, options.value(QStringLiteral("session_handle_token")).toString());
            results.insert(QStringLiteral("session_handle"), session);
        } else if (message.member() == QLatin1String("BindShortcuts")) {
            const QDBusArgument shortcuts = message.arguments().at(1).value<QDBusArgument>();
            shortcuts.beginArray();
            while (!shortcuts.atEnd()) {
                QString id;
                QVariantMap properties;
                shortcuts.beginStructure();
                shortcuts >> id >> properties;
                shortcuts.endStructure();
                boundId = id;
                trigger = properties.value(QStringLiteral("preferred_trigger")).toString();
            }
            shortcuts.endArray();
        } else {
            return false;
        }
        connection.send(message.createReply(QVariant::fromValue(QDBusObjectPath(request))));
        QDBusMessage response = QDBusMessage::createSignal(request, QStringLiteral("org.freedesktop.portal.Request"),
                                                           QStringLiteral("Response"));
        response << uint(approve ? 0 : 1) << results;
        connection.send(response);
        return true;
    }
    void press(const QString& id) {
        QDBusMessage signal = QDBusMessage::createSignal(QStringLiteral("/org/freedesktop/portal/desktop"),
                                                         QStringLiteral("org.freedesktop.portal.GlobalShortcuts"),
                                                         QStringLiteral("Activated"));
        signal << QVariant::fromValue(QDBusObjectPath(session)) << id << quint64(0) << QVariantMap();
        bus_.send(signal);
    }
    bool approve = true;
    QString session;
    QString boundId;
    QString trigger;

private:
    QDBusConnection bus_;
};

TEST(GlobalShortcut, BindsThroughThePortalAndFiresOnActivation) {
    testing::ensureApplication();
    testing::PrivateBus bus;
    ASSERT_TRUE(bus.isRunning());
    FakeShortcutsPortal portal(bus.connect(QStringLiteral("portal")));
    ASSERT_TRUE(portal.start());

    GlobalShortcut shortcut(bus.connect(QStringLiteral("app")), GlobalShortcut::Backend::portal);
    int fired = 0;
    QObject::connect(&shortcut, &GlobalShortcut::activated, [&] { ++fired; });
    shortcut.setShortcut(35, 2304);
    ASSERT_TRUE(testing::waitUntil([&] { return shortcut.state() == GlobalShortcut::State::active; }))
        << shortcut.unavailableReason().toStdString();
    EXPECT_EQ(portal.boundId, GlobalShortcut::kShortcutId);
    EXPECT_EQ(portal.trigger, QStringLiteral("LOGO+ALT+p"));

    portal.press(QStringLiteral("something-else"));
    portal.press(GlobalShortcut::kShortcutId);
    ASSERT_TRUE(testing::waitUntil([&] { return fired == 1; }));
    testing::spinFor(50);
    EXPECT_EQ(fired, 1);

    // Rebinding reuses the session; a user who declines leaves it unavailable, with a reason.
    portal.approve = false;
    shortcut.setShortcut(12, 4096 | 2048);
    ASSERT_TRUE(testing::waitUntil([&] { return shortcut.state() == GlobalShortcut::State::unavailable; }));
    EXPECT_EQ(portal.trigger, QStringLiteral("CTRL+ALT+q"));
    EXPECT_EQ(shortcut.unavailableReason(), QStringLiteral("The global shortcut was declined"));
}

TEST(GlobalShortcut, ReportsWhyItIsUnavailable) {
    testing::ensureApplication();
    GlobalShortcut none(QDBusConnection(QString()), GlobalShortcut::Backend::none);
    none.setShortcut(35, 2304);
    EXPECT_EQ(none.state(), GlobalShortcut::State::unavailable);
    EXPECT_FALSE(none.unavailableReason().isEmpty());
    EXPECT_EQ(none.displayText(), QStringLiteral("Super+Alt+P"));

    // A desktop without the portal: the bus answers that nobody owns the name.
    testing::PrivateBus bus;
    ASSERT_TRUE(bus.isRunning());
    GlobalShortcut portal(bus.connect(QStringLiteral("app")), GlobalShortcut::Backend::portal);
    portal.setShortcut(35, 2304);
    EXPECT_EQ(portal.state(), GlobalShortcut::State::pending);
    ASSERT_TRUE(testing::waitUntil([&] { return portal.state() == GlobalShortcut::State::unavailable; }));
    EXPECT_EQ(portal.unavailableReason(), QStringLiteral("This desktop does not offer global shortcuts to apps"));

    portal.setShortcut(35, 0);
    EXPECT_EQ(portal.state(), GlobalShortcut::State::unavailable);
    portal.clear();
    EXPECT_EQ(portal.state(), GlobalShortcut::State::off);
}

}  // namespace
}  // namespace trotlet::platform
