// Sorting, searching, the selection and the held order of the Processes list.
#include <gtest/gtest.h>

#include "processes/ListGeometry.h"
#include "processes/ProcessTable.h"

using namespace trotlet;
using namespace trotlet::processes;
using metrics::ProcessRow;

namespace {

ProcessRow row(std::int32_t pid, const char* name, double cpu, std::uint64_t memory,
               std::optional<std::int64_t> threads, std::optional<std::string> user,
               const char* exe = nullptr) {
    ProcessRow r;
    r.pid = pid;
    r.name = name;
    r.cpuPercent = cpu;
    r.memoryBytes = memory;
    r.threads = threads;
    r.user = std::move(user);
    if (exe) r.executablePath = exe;
    r.startTicks = 1000 + std::uint64_t(pid);
    return r;
}

std::vector<ProcessRow> sample() {
    return {row(10, "firefox", 20, 900, 90, "alice", "/usr/lib/firefox/firefox"),
            row(11, "Web Content", 0, 300, 20, "alice", "/usr/lib/firefox/firefox"),
            row(12, "bash", 0, 5, 1, "alice", "/usr/bin/bash"),
            row(4242, "Xorg", 3, 300, std::nullopt, "root", "/usr/lib/xorg/Xorg"),
            row(13, "kworker/0:1", 0, 0, 1, std::nullopt)};
}

std::vector<std::int32_t> pids(const ProcessTable& t) {
    std::vector<std::int32_t> out;
    for (std::size_t i = 0; i < t.size(); ++i) out.push_back(t.at(i).row->pid);
    return out;
}

}  // namespace

TEST(ProcessTable, SortsByEveryColumnWithStableTies) {
    struct Case {
        ProcessSort sort;
        std::vector<std::int32_t> expected;
    };
    const Case cases[] = {
        // Ties (three at 0%) fall back to the name, then the PID, in either direction.
        {{ProcessColumn::cpu, true}, {10, 4242, 12, 13, 11}},
        {{ProcessColumn::cpu, false}, {12, 13, 11, 4242, 10}},
        {{ProcessColumn::memory, true}, {10, 11, 4242, 12, 13}},
        {{ProcessColumn::name, false}, {12, 10, 13, 11, 4242}},  // ASCII case ignored
        {{ProcessColumn::name, true}, {4242, 11, 13, 10, 12}},
        // Absent readings go last whichever way the column runs.
        {{ProcessColumn::threads, true}, {10, 11, 12, 13, 4242}},
        {{ProcessColumn::threads, false}, {12, 13, 11, 10, 4242}},
        {{ProcessColumn::user, false}, {12, 10, 11, 4242, 13}},
        {{ProcessColumn::user, true}, {4242, 12, 10, 11, 13}},
    };
    for (const auto& c : cases) {
        ProcessTable t;
        t.setSort(c.sort);
        t.setRows(sample());
        EXPECT_EQ(pids(t), c.expected)
            << ProcessColumnNames[std::size_t(c.sort.column)] << " " << c.sort.descending;
    }
    EXPECT_EQ(ProcessSort{}.choosing(ProcessColumn::cpu), (ProcessSort{ProcessColumn::cpu, false}));
    EXPECT_EQ(ProcessSort{}.choosing(ProcessColumn::name),
              (ProcessSort{ProcessColumn::name, false}));
    EXPECT_EQ(ProcessSort{}.choosing(ProcessColumn::memory),
              (ProcessSort{ProcessColumn::memory, true}));
}

TEST(ProcessTable, SearchesNamePathAndPid) {
    struct Case {
        const char* query;
        std::vector<std::int32_t> expected;  // in CPU order
    };
    const Case cases[] = {
        {"", {10, 4242, 12, 13, 11}},
        {"  FIREfox ", {10, 11}},  // trimmed, any case, and the path finds Web Content
        {"/usr/bin", {12}},
        {"42", {4242}},           // a number: PIDs that start with it
        {"1", {10, 12, 13, 11}},  // ... and names or paths holding it
        {"kworker/0:", {13}},
        {"zzz", {}},
    };
    for (const auto& c : cases) {
        ProcessTable t;
        t.setRows(sample());
        t.setQuery(c.query);
        EXPECT_EQ(pids(t), c.expected) << "'" << c.query << "'";
        EXPECT_EQ(t.totalCount(), 5u);
    }
}

TEST(ProcessTable, SelectionFollowsItsProcessAcrossSamples) {
    ProcessTable t;
    t.setRows(sample());
    t.select(12);  // bash, third
    auto next = sample();
    next[2].cpuPercent = 50;  // bash becomes the busiest
    t.setRows(next);
    EXPECT_EQ(t.selectedIndex(), 0u);
    EXPECT_EQ(t.selectedPid(), 12);
    t.moveSelection(2);
    EXPECT_EQ(t.selectedPid(), 4242);
    t.moveSelection(10);
    EXPECT_EQ(t.selectedPid(), 11) << "stops at the end";
    // The selected process ends and its PID is given to a newer one: nothing stays selected,
    // so a key meant for the old process never reaches the new one.
    next = sample();
    next[1].startTicks = 999999;
    t.setRows(next);
    EXPECT_FALSE(t.selectedPid());
    t.moveSelection(-1);
    EXPECT_EQ(t.selectedIndex(), t.size() - 1) << "a step up from nothing selects the last";
    // A search that hides the selected row clears the selection.
    t.setQuery("bash");
    EXPECT_FALSE(t.selectedPid());
}

TEST(ProcessTable, HeldOrderStandsStillAndLettingGoReorders) {
    ProcessTable t;
    t.setRows(sample());
    const auto before = pids(t);  // 10, 4242, 12, 13, 11
    t.setHeld(true);
    auto next = sample();
    next[2].cpuPercent = 80;                              // bash would jump to the top
    next.erase(next.begin() + 1);                         // Web Content ends
    next.push_back(row(14, "make", 99, 10, 1, "alice"));  // and a newcomer arrives
    t.setRows(next);
    std::vector<std::int32_t> held = before;
    held.push_back(14);
    EXPECT_EQ(pids(t), held) << "rows keep their places; the newcomer joins at the end";
    EXPECT_TRUE(t.at(4).ended) << "Web Content stays where it was, marked as ended";
    EXPECT_DOUBLE_EQ(t.at(2).row->cpuPercent, 80) << "readings still change";
    t.setRows(next);
    EXPECT_EQ(pids(t), held) << "another sample while held changes nothing";
    t.setHeld(false);
    EXPECT_EQ(pids(t), (std::vector<std::int32_t>{14, 12, 10, 4242, 13}));
    for (std::size_t i = 0; i < t.size(); ++i) EXPECT_FALSE(t.at(i).ended);
}

TEST(ListGeometry, RowsAndOpenedRowsTileTheList) {
    ListGeometry g{100, 28, {{0, 50}, {3, 40}, {99, 30}}};
    EXPECT_DOUBLE_EQ(g.top(1), 78);
    EXPECT_DOUBLE_EQ(g.top(4), 4 * 28 + 90);
    EXPECT_DOUBLE_EQ(g.total(), 100 * 28 + 120);
    // Every y inside the list belongs to exactly the row that covers it.
    for (double y = 0; y < g.total(); y += 0.5) {
        const auto i = g.indexAt(y);
        ASSERT_TRUE(i) << y;
        EXPECT_LE(g.top(*i), y);
        EXPECT_LT(y, g.top(*i) + g.height(*i)) << y;
    }
    EXPECT_FALSE(g.indexAt(g.total()));
    EXPECT_FALSE(g.indexAt(-1));
}
