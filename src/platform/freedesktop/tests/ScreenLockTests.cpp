#include "platform/freedesktop/ScreenLock.h"

#include "FreedesktopFakeServices.h"
#include "FreedesktopTestSupport.h"

#include <gtest/gtest.h>

namespace trotlet::platform {
namespace {

using testing::waitUntil;

class ScreenLockTest : public ::testing::Test {
protected:
    void SetUp() override {
        testing::ensureApplication();
        ASSERT_TRUE(sessionBus.isRunning());
        ASSERT_TRUE(systemBus.isRunning());
    }
    testing::PrivateBus sessionBus;
    testing::PrivateBus systemBus;
};

TEST_F(ScreenLockTest, EitherSourceLocksAndBothMustClear) {
    testing::FakeScreenSaver screenSaver;
    testing::FakeLogindManager logind;
    auto saverConnection = sessionBus.connect(QStringLiteral("saver"));
    auto logindConnection = systemBus.connect(QStringLiteral("logind"));
    ASSERT_TRUE(screenSaver.start(saverConnection));
    ASSERT_TRUE(logind.start(logindConnection));

    ScreenLock lock(sessionBus.connect(QStringLiteral("app")), systemBus.connect(QStringLiteral("app")));
    testing::Spy changed(&lock, &ScreenLock::lockedChanged);
    ASSERT_TRUE(waitUntil([&] { return lock.screenSaverActive() && lock.sessionLockedHint(); }));
    EXPECT_EQ(lock.locked(), false);
    EXPECT_EQ(lock.sessionPath(), testing::FakeLogindManager::sessionPath());

    // A scripted evening: blank, lock, unblank (still locked), unlock.
    screenSaver.setActive(true);
    ASSERT_TRUE(waitUntil([&] { return lock.locked() == true; }));
    logind.session.setLocked(true, logindConnection);
    ASSERT_TRUE(waitUntil([&] { return lock.sessionLockedHint() == true; }));
    screenSaver.setActive(false);
    ASSERT_TRUE(waitUntil([&] { return lock.screenSaverActive() == false; }));
    EXPECT_EQ(lock.locked(), true);
    logind.session.setLocked(false, logindConnection);
    ASSERT_TRUE(waitUntil([&] { return lock.locked() == false; }));

    // One signal per change of the combined state: false, true, false.
    ASSERT_EQ(changed.count(), 3);
    EXPECT_EQ(std::get<0>(changed.at(0)), false);
    EXPECT_EQ(std::get<0>(changed.at(1)), true);
    EXPECT_EQ(std::get<0>(changed.at(2)), false);
}

TEST_F(ScreenLockTest, AbsentWhenNoServiceAnswers) {
    ScreenLock lock(sessionBus.connect(QStringLiteral("app")), systemBus.connect(QStringLiteral("app")));
    testing::spinFor(200);
    EXPECT_FALSE(lock.locked().has_value());
}

}  // namespace
}  // namespace trotlet::platform
