#include "platform/freedesktop/ReduceMotion.h"

#include "FreedesktopFakeServices.h"
#include "FreedesktopTestSupport.h"

#include <gtest/gtest.h>

namespace trotlet::platform {
namespace {

using testing::waitUntil;

const QString kGnome = QStringLiteral("org.gnome.desktop.interface");
const QString kAppearance = QStringLiteral("org.freedesktop.appearance");
const QString kKde = QStringLiteral("org.kde.kdeglobals.KDE");

TEST(ReduceMotionValues, InterpretsEachKeyByItsType) {
    const struct {
        int key;
        QVariant value;
        std::optional<bool> reduce;
    } cases[] = {
        {0, QVariant(1u), true},
        {0, QVariant(0u), false},
        {0, QVariant(7u), false},  // unknown level: no preference
        {1, QVariant(false), true},
        {1, QVariant(true), false},
        {1, QVariant(QStringLiteral("false")), std::nullopt},  // wrong type: no answer
        {2, QVariant(0.0), true},
        {2, QVariant(0.5), false},
        {2, QVariant(1.0), false},
        {1, QVariant::fromValue(QDBusVariant(QVariant::fromValue(QDBusVariant(false)))), true},
    };
    for (const auto& c : cases) {
        EXPECT_EQ(ReduceMotion::interpret(c.key, c.value), c.reduce) << c.key << " " << c.value.toString().toStdString();
    }
}

class ReduceMotionTest : public ::testing::Test {
protected:
    void SetUp() override {
        testing::ensureApplication();
        ASSERT_TRUE(bus.isRunning());
        appBus = bus.connect(QStringLiteral("app"));
    }
    testing::PrivateBus bus;
    QDBusConnection appBus{QString()};
};

TEST_F(ReduceMotionTest, ReadsGnomeAnimationsAndFollowsChanges) {
    testing::FakePortalSettings portal;
    portal.values.insert({kGnome, QStringLiteral("enable-animations")}, true);
    ASSERT_TRUE(portal.start(bus.connect(QStringLiteral("portal"))));

    ReduceMotion reader(appBus, std::nullopt);
    testing::Spy changed(&reader, &ReduceMotion::changed);
    ASSERT_TRUE(waitUntil([&] { return reader.reduceMotion().has_value(); }));
    EXPECT_EQ(reader.reduceMotion(), false);
    EXPECT_EQ(reader.decidedBy(), QStringLiteral("org.gnome.desktop.interface enable-animations"));

    portal.change(kGnome, QStringLiteral("enable-animations"), false);
    ASSERT_TRUE(waitUntil([&] { return reader.reduceMotion() == true; }));
    EXPECT_EQ(std::get<0>(changed.last()), true);

    // The standard key outranks the desktop-specific one once it appears.
    portal.change(kAppearance, QStringLiteral("reduced-motion"), 0u);
    ASSERT_TRUE(waitUntil([&] { return reader.reduceMotion() == false; }));
    EXPECT_EQ(reader.decidedBy(), QStringLiteral("org.freedesktop.appearance reduced-motion"));

    // Unrelated settings change nothing.
    const int before = changed.count();
    portal.change(QStringLiteral("org.gnome.desktop.interface"), QStringLiteral("color-scheme"),
                  QStringLiteral("prefer-dark"));
    testing::spinFor(50);
    EXPECT_EQ(changed.count(), before);
}

TEST_F(ReduceMotionTest, OldPortalsAnswerThroughRead) {
    testing::FakePortalSettings portal(/*readOne=*/false);
    portal.values.insert({kKde, QStringLiteral("AnimationDurationFactor")}, 0.0);
    ASSERT_TRUE(portal.start(bus.connect(QStringLiteral("portal"))));
    ReduceMotion reader(appBus, std::nullopt);
    ASSERT_TRUE(waitUntil([&] { return reader.reduceMotion().has_value(); }));
    EXPECT_EQ(reader.reduceMotion(), true);
    EXPECT_EQ(reader.decidedBy(), QStringLiteral("org.kde.kdeglobals.KDE AnimationDurationFactor"));
}

TEST_F(ReduceMotionTest, AbsentWithoutAPortalUnlessFixed) {
    ReduceMotion reader(appBus, std::nullopt);
    testing::spinFor(200);
    EXPECT_FALSE(reader.reduceMotion().has_value());
    EXPECT_TRUE(reader.decidedBy().isEmpty());

    ReduceMotion fixed(appBus, true);
    EXPECT_EQ(fixed.reduceMotion(), true);

    for (const auto& [value, expected] : {std::pair<const char*, std::optional<bool>>{"1", true},
                                          {"0", false}, {"yes", std::nullopt}, {"", std::nullopt}}) {
        qputenv("TROTLET_QA_REDUCE_MOTION", value);
        EXPECT_EQ(ReduceMotion::fixedFromEnvironment(), expected) << value;
    }
    qunsetenv("TROTLET_QA_REDUCE_MOTION");
}

}  // namespace
}  // namespace trotlet::platform
