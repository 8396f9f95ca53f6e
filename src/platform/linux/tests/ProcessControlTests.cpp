// Signals real child processes that each test starts, through pidfds and through the fallback.
#include <gtest/gtest.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <chrono>
#include <fstream>
#include <sstream>
#include <thread>

#include "platform/linux/LinuxProcessControl.h"
#include "platform/linux/ProcessReader.h"

extern char** environ;

using namespace trotlet;
using namespace trotlet::platform;
using processes::ProcessIdentity;
using processes::QuitSignal;
using processes::SignalOutcome;

namespace {

std::string readFile(const std::string& path) {
    std::ifstream in(path);
    std::stringstream s;
    s << in.rdbuf();
    return s.str();
}

// A `sleep` started by the test; it ignores SIGTERM when asked to. Killed and reaped at the end
// whatever the test did.
class Child {
public:
    explicit Child(bool ignoreTerminate) {
        const std::string script =
            std::string(ignoreTerminate ? "trap '' TERM; " : "") + "exec sleep 30";
        const char* argv[] = {"sh", "-c", script.c_str(), nullptr};
        EXPECT_EQ(::posix_spawnp(&pid_, "sh", nullptr, nullptr, const_cast<char**>(argv), environ),
                  0);
        // Wait for the exec, so that the trap is in place before a signal comes.
        for (int i = 0; i < 200 && readFile(path("comm")) != "sleep\n"; ++i)
            std::this_thread::sleep_for(std::chrono::milliseconds(5));
        ProcStat stat;
        const std::string text = readFile(path("stat"));
        EXPECT_TRUE(parseProcStat(text, stat));
        identity_ = {pid_, stat.startTime};
    }
    ~Child() {
        if (!reaped_) {
            ::kill(pid_, SIGKILL);
            reap();
        }
    }
    const ProcessIdentity& identity() const { return identity_; }
    // How it ended: the signal that ended it.
    int reap() {
        int status = 0;
        ::waitpid(pid_, &status, 0);
        reaped_ = true;
        return WIFSIGNALED(status) ? WTERMSIG(status) : 0;
    }

private:
    std::string path(const char* file) const {
        return "/proc/" + std::to_string(pid_) + "/" + file;
    }
    pid_t pid_ = 0;
    ProcessIdentity identity_;
    bool reaped_ = false;
};

bool endsWithin(processes::ProcessControl& control, const ProcessIdentity& process,
                std::chrono::milliseconds limit) {
    const auto deadline = std::chrono::steady_clock::now() + limit;
    while (std::chrono::steady_clock::now() < deadline) {
        if (!control.isRunning(process)) return true;
        std::this_thread::sleep_for(std::chrono::milliseconds(5));
    }
    return false;
}

class ProcessControlTest : public ::testing::TestWithParam<bool> {
protected:
    LinuxProcessControl control{LinuxProcessControl::Options{"/proc", 0, GetParam()}};
};

}  // namespace

TEST_P(ProcessControlTest, QuitEndsAProcessWithSigterm) {
    Child child(false);
    EXPECT_EQ(control.usesPidfd(), GetParam());
    EXPECT_TRUE(control.isRunning(child.identity()));
    ASSERT_EQ(control.send(child.identity(), QuitSignal::terminate), SignalOutcome::sent);
    EXPECT_TRUE(endsWithin(control, child.identity(), std::chrono::seconds(5)))
        << "seen as ended while still a zombie";
    EXPECT_EQ(child.reap(), SIGTERM);
    EXPECT_EQ(control.send(child.identity(), QuitSignal::terminate), SignalOutcome::gone);
}

TEST_P(ProcessControlTest, OneThatIgnoresSigtermEndsWithSigkill) {
    Child child(true);
    ASSERT_EQ(control.send(child.identity(), QuitSignal::terminate), SignalOutcome::sent);
    EXPECT_FALSE(endsWithin(control, child.identity(), std::chrono::milliseconds(300)));
    ASSERT_EQ(control.send(child.identity(), QuitSignal::kill), SignalOutcome::sent);
    EXPECT_TRUE(endsWithin(control, child.identity(), std::chrono::seconds(5)));
    EXPECT_EQ(child.reap(), SIGKILL);
}

TEST_P(ProcessControlTest, AReusedPidIsNeverSignalled) {
    Child child(false);
    // The sampled process started at another time: this PID now names a newer process.
    ProcessIdentity sampled = child.identity();
    *sampled.startTicks -= 1;
    EXPECT_EQ(control.send(sampled, QuitSignal::kill), SignalOutcome::replaced);
    EXPECT_FALSE(control.isRunning(sampled));
    EXPECT_FALSE(control.details(sampled));
    EXPECT_FALSE(endsWithin(control, child.identity(), std::chrono::milliseconds(100)));
    EXPECT_EQ(control.send({child.identity().pid, std::nullopt}, QuitSignal::kill),
              SignalOutcome::failed)
        << "a row without a start time cannot be told from a newer process";
    ASSERT_EQ(control.send(child.identity(), QuitSignal::terminate), SignalOutcome::sent);
    EXPECT_EQ(child.reap(), SIGTERM) << "the child was alive until its own signal";
}

TEST_P(ProcessControlTest, DetailsGiveCommandLineAndStartTime) {
    Child child(false);
    const auto details = control.details(child.identity());
    ASSERT_TRUE(details);
    EXPECT_EQ(details->commandLine, "sleep 30");
    ASSERT_TRUE(details->startTime);
    const double age =
        std::chrono::duration<double>(std::chrono::system_clock::now() - *details->startTime)
            .count();
    EXPECT_LT(std::abs(age), 5.0) << "started moments ago (boot time is whole seconds)";
}

TEST_P(ProcessControlTest, AnotherUsersProcessIsRefused) {
    Child child(false);
    if (::getuid() != 0) {
        // PID 1 belongs to root; the kernel refuses a user's signal.
        ProcStat init;
        ASSERT_TRUE(parseProcStat(readFile("/proc/1/stat"), init));
        EXPECT_EQ(control.send({1, init.startTime}, QuitSignal::terminate), SignalOutcome::denied);
        return;
    }
    // As root: a forked helper becomes nobody and tries to signal root's child.
    const pid_t helper = ::fork();
    if (helper == 0) {
        if (::setgid(65534) != 0 || ::setuid(65534) != 0) ::_exit(100);
        LinuxProcessControl asNobody{LinuxProcessControl::Options{"/proc", 0, GetParam()}};
        ::_exit(int(asNobody.send(child.identity(), QuitSignal::terminate)));
    }
    int status = 0;
    ::waitpid(helper, &status, 0);
    ASSERT_TRUE(WIFEXITED(status));
    EXPECT_EQ(WEXITSTATUS(status), int(SignalOutcome::denied));
    EXPECT_TRUE(control.isRunning(child.identity()));
}

INSTANTIATE_TEST_SUITE_P(PidfdAndFallback, ProcessControlTest, ::testing::Bool(),
                         [](const auto& info) { return info.param ? "pidfd" : "startTimeCheck"; });
