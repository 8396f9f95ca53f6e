// One QCoreApplication for the whole weather test program: the network client, timers and
// the local server need an event loop on the main thread.
#include <gtest/gtest.h>

#include "weather/tests/LocalHttpServer.h"

namespace {

class QtAppEnvironment : public ::testing::Environment {
public:
    void SetUp() override { trotlet::weather::testing::ensureApp(); }
};

[[maybe_unused]] auto* const gEnvironment = ::testing::AddGlobalTestEnvironment(new QtAppEnvironment);

}  // namespace
