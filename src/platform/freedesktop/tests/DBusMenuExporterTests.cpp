#include "platform/freedesktop/DBusMenuExporter.h"
#include "platform/freedesktop/DBusMenuTypes.h"
#include "platform/freedesktop/StatusNotifierItem.h"

#include "FreedesktopTestSupport.h"

#include <QAction>
#include <QActionGroup>
#include <QDBusArgument>
#include <QMenu>

#include <gtest/gtest.h>

namespace trotlet::platform {
namespace {

using testing::PrivateBus;
using testing::SignalRecorder;
using testing::waitUntil;

const QString kMenuInterface = QStringLiteral("com.canonical.dbusmenu");

TEST(DBusMenuLabel, TurnsQtMnemonicsIntoUnderscores) {
    const struct {
        const char* text;
        const char* label;
    } cases[] = {
        {"Open Trotlet", "Open Trotlet"},
        {"&Quit", "_Quit"},
        {"Settings\u2026", "Settings\u2026"},
        {"Save && Quit", "Save & Quit"},
        {"snake_case", "snake__case"},
        {"&", "_"},
        {"", ""},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(DBusMenuExporter::labelFromText(QString::fromUtf8(c.text)), QString::fromUtf8(c.label))
            << c.text;
    }
}

class DBusMenuExporterTest : public ::testing::Test {
protected:
    void SetUp() override {
        testing::ensureApplication();
        ASSERT_TRUE(bus.isRunning());
        itemBus = bus.connect(QStringLiteral("item"));
        hostBus = bus.connect(QStringLiteral("host"));
        menu = std::make_unique<QMenu>();
        open = menu->addAction(QStringLiteral("Open Trotlet"));
        settings = menu->addAction(QString::fromUtf8("Settings\u2026"));
        menu->addSeparator();
        quit = menu->addAction(QStringLiteral("Quit"));
        item = std::make_unique<StatusNotifierItem>(itemBus);
        item->setMenu(menu.get());
    }

    QDBusMessage callMenu(const QString& method, const QVariantList& args) {
        return testing::call(hostBus, item->serviceName(), StatusNotifierItem::kMenuPath, kMenuInterface,
                             method, args);
    }

    std::pair<uint, DBusMenuLayoutItem> layout(int parent = 0, int depth = -1) {
        const QDBusMessage reply = callMenu(QStringLiteral("GetLayout"), {parent, depth, QStringList()});
        EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
        DBusMenuLayoutItem root;
        if (reply.arguments().size() < 2) return {0, root};
        reply.arguments().at(1).value<QDBusArgument>() >> root;
        return {reply.arguments().at(0).toUInt(), root};
    }

    PrivateBus bus;
    QDBusConnection itemBus{QString()};
    QDBusConnection hostBus{QString()};
    std::unique_ptr<QMenu> menu;
    QAction* open = nullptr;
    QAction* settings = nullptr;
    QAction* quit = nullptr;
    std::unique_ptr<StatusNotifierItem> item;
};

TEST_F(DBusMenuExporterTest, LayoutListsTheActionsInOrder) {
    const auto [revision, root] = layout();
    EXPECT_GE(revision, 1u);
    EXPECT_EQ(root.id, 0);
    EXPECT_EQ(root.properties.value(QStringLiteral("children-display")).toString(), QStringLiteral("submenu"));
    ASSERT_EQ(root.children.size(), 4);
    EXPECT_EQ(root.children[0].properties.value(QStringLiteral("label")).toString(), QStringLiteral("Open Trotlet"));
    EXPECT_EQ(root.children[1].properties.value(QStringLiteral("label")).toString(),
              QString::fromUtf8("Settings\u2026"));
    EXPECT_EQ(root.children[2].properties.value(QStringLiteral("type")).toString(), QStringLiteral("separator"));
    EXPECT_FALSE(root.children[2].properties.contains(QStringLiteral("label")));
    EXPECT_EQ(root.children[3].properties.value(QStringLiteral("label")).toString(), QStringLiteral("Quit"));
    // Defaults are left out, as the protocol asks.
    EXPECT_FALSE(root.children[0].properties.contains(QStringLiteral("enabled")));
    EXPECT_FALSE(root.children[0].properties.contains(QStringLiteral("visible")));

    QSet<int> ids;
    for (const auto& child : root.children) ids.insert(child.id);
    EXPECT_EQ(ids.size(), 4);
    EXPECT_FALSE(ids.contains(0));

    // Depth 0 gives the node alone; ids stay stable between calls.
    const auto [again, shallow] = layout(0, 0);
    EXPECT_TRUE(shallow.children.isEmpty());
    EXPECT_EQ(again, revision);
    EXPECT_EQ(layout().second.children[3].id, root.children[3].id);

    const QDBusMessage unknown = callMenu(QStringLiteral("GetLayout"), {4242, -1, QStringList()});
    EXPECT_EQ(unknown.type(), QDBusMessage::ErrorMessage);
    EXPECT_EQ(unknown.errorName(), QStringLiteral("com.canonical.dbusmenu.UnknownId"));
}

TEST_F(DBusMenuExporterTest, ClickedEventTriggersTheAction) {
    const auto [revision, root] = layout();
    ASSERT_EQ(root.children.size(), 4);
    int settingsTriggered = 0;
    int quitTriggered = 0;
    QObject::connect(settings, &QAction::triggered, [&] { ++settingsTriggered; });
    QObject::connect(quit, &QAction::triggered, [&] { ++quitTriggered; });

    const QDBusMessage reply = callMenu(QStringLiteral("Event"),
                                        {root.children[1].id, QStringLiteral("clicked"),
                                         QVariant::fromValue(QDBusVariant(0)), 0u});
    EXPECT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    ASSERT_TRUE(waitUntil([&] { return settingsTriggered == 1; }));
    EXPECT_EQ(quitTriggered, 0);

    // A hover is not a click, and a disabled action does not fire.
    callMenu(QStringLiteral("Event"), {root.children[3].id, QStringLiteral("hovered"),
                                       QVariant::fromValue(QDBusVariant(0)), 0u});
    quit->setEnabled(false);
    callMenu(QStringLiteral("Event"), {root.children[3].id, QStringLiteral("clicked"),
                                       QVariant::fromValue(QDBusVariant(0)), 0u});
    testing::spinFor(50);
    EXPECT_EQ(quitTriggered, 0);

    const QDBusMessage unknown = callMenu(QStringLiteral("Event"),
                                          {999, QStringLiteral("clicked"), QVariant::fromValue(QDBusVariant(0)), 0u});
    EXPECT_EQ(unknown.errorName(), QStringLiteral("com.canonical.dbusmenu.UnknownId"));
}

TEST_F(DBusMenuExporterTest, EventGroupReportsUnknownIdsAndFiresTheKnownOnes) {
    const auto root = layout().second;
    int openTriggered = 0;
    QObject::connect(open, &QAction::triggered, [&] { ++openTriggered; });
    DBusMenuEventList events{
        DBusMenuEvent{root.children[0].id, QStringLiteral("clicked"), QDBusVariant(0), 0},
        DBusMenuEvent{777, QStringLiteral("clicked"), QDBusVariant(0), 0},
    };
    const QDBusMessage reply = callMenu(QStringLiteral("EventGroup"), {QVariant::fromValue(events)});
    ASSERT_EQ(reply.type(), QDBusMessage::ReplyMessage) << reply.errorMessage().toStdString();
    QList<int> idErrors;
    reply.arguments().first().value<QDBusArgument>() >> idErrors;
    EXPECT_EQ(idErrors, QList<int>{777});
    ASSERT_TRUE(waitUntil([&] { return openTriggered == 1; }));
}

TEST_F(DBusMenuExporterTest, ChangesReachTheHostAsSignals) {
    SignalRecorder recorder(hostBus, item->serviceName(), StatusNotifierItem::kMenuPath, kMenuInterface);
    const auto [revision, root] = layout();
    const int openId = root.children[0].id;
    // Setting the menu announced the first layout; count only what follows.
    testing::spinFor(20);
    recorder.clear();

    // A changed action: its new properties, and the ones that went back to defaults.
    open->setEnabled(false);
    ASSERT_TRUE(waitUntil([&] { return recorder.count(QStringLiteral("ItemsPropertiesUpdated")) == 1; }));
    DBusMenuItemList updated;
    recorder.signals_.last().arguments.at(0).value<QDBusArgument>() >> updated;
    ASSERT_EQ(updated.size(), 1);
    EXPECT_EQ(updated[0].id, openId);
    EXPECT_EQ(updated[0].properties.value(QStringLiteral("enabled")), QVariant(false));

    open->setEnabled(true);
    ASSERT_TRUE(waitUntil([&] { return recorder.count(QStringLiteral("ItemsPropertiesUpdated")) == 2; }));
    DBusMenuItemKeysList removed;
    recorder.signals_.last().arguments.at(1).value<QDBusArgument>() >> removed;
    ASSERT_EQ(removed.size(), 1);
    EXPECT_EQ(removed[0].id, openId);
    EXPECT_EQ(removed[0].properties, QStringList{QStringLiteral("enabled")});

    // A new action: one LayoutUpdated with a higher revision, however many actions changed.
    QActionGroup group(menu.get());
    QAction* a = menu->addAction(QStringLiteral("Show CPU"));
    QAction* b = menu->addAction(QStringLiteral("Show memory"));
    for (QAction* action : {a, b}) {
        action->setCheckable(true);
        group.addAction(action);
    }
    a->setChecked(true);
    ASSERT_TRUE(waitUntil([&] { return recorder.count(QStringLiteral("LayoutUpdated")) >= 1; }));
    testing::spinFor(50);
    EXPECT_EQ(recorder.count(QStringLiteral("LayoutUpdated")), 1);
    const uint announced = recorder.signals_.last().member == QStringLiteral("LayoutUpdated")
                               ? recorder.signals_.last().arguments.at(0).toUInt()
                               : 0;
    const auto [newRevision, newRoot] = layout();
    EXPECT_GT(newRevision, revision);
    EXPECT_GE(newRevision, announced);
    ASSERT_EQ(newRoot.children.size(), 6);
    EXPECT_EQ(newRoot.children[4].properties.value(QStringLiteral("toggle-type")).toString(), QStringLiteral("radio"));
    EXPECT_EQ(newRoot.children[4].properties.value(QStringLiteral("toggle-state")).toInt(), 1);
    EXPECT_EQ(newRoot.children[5].properties.value(QStringLiteral("toggle-state")).toInt(), 0);
}

TEST_F(DBusMenuExporterTest, PropertiesAndAboutToShowAnswerPerItem) {
    const auto root = layout().second;
    const int quitId = root.children[3].id;

    const QDBusMessage group = callMenu(QStringLiteral("GetGroupProperties"),
                                        {QVariant::fromValue(QList<int>{quitId, 31337}),
                                         QStringList{QStringLiteral("label")}});
    ASSERT_EQ(group.type(), QDBusMessage::ReplyMessage) << group.errorMessage().toStdString();
    DBusMenuItemList items;
    group.arguments().first().value<QDBusArgument>() >> items;
    ASSERT_EQ(items.size(), 1);
    EXPECT_EQ(items[0].id, quitId);
    EXPECT_EQ(items[0].properties.keys(), QStringList{QStringLiteral("label")});

    const QDBusMessage property = callMenu(QStringLiteral("GetProperty"), {quitId, QStringLiteral("label")});
    ASSERT_EQ(property.type(), QDBusMessage::ReplyMessage);
    EXPECT_EQ(property.arguments().first().value<QDBusVariant>().variant().toString(), QStringLiteral("Quit"));

    int shown = 0;
    QObject::connect(menu.get(), &QMenu::aboutToShow, [&] { ++shown; });
    const QDBusMessage about = callMenu(QStringLiteral("AboutToShow"), {0});
    ASSERT_EQ(about.type(), QDBusMessage::ReplyMessage);
    EXPECT_FALSE(about.arguments().first().toBool());
    EXPECT_EQ(shown, 1);

    EXPECT_EQ(testing::getProperty(hostBus, item->serviceName(), StatusNotifierItem::kMenuPath, kMenuInterface,
                                   QStringLiteral("Version"))
                  .toUInt(),
              3u);
    EXPECT_EQ(testing::getProperty(hostBus, item->serviceName(), StatusNotifierItem::kMenuPath, kMenuInterface,
                                   QStringLiteral("Status"))
                  .toString(),
              QStringLiteral("normal"));
}

}  // namespace
}  // namespace trotlet::platform
