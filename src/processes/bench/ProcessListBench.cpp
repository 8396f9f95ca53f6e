// What the Processes tab costs with 2,000 processes. Prints one JSON object:
//   sample:   one full read of a generated /proc tree of 2,000 processes by the process reader,
//             against the floor of opening and reading stat and statm of every process;
//   paint:    repainting the rows in view, at scale 1 and 2, at offsets across the list;
//   scroll:   one wheel step (three rows) scrolled and painted, through the whole list;
//   filter:   each keystroke of a few searches, from the text to the repainted list;
//   memory:   the heap the list's table holds for 2,000 rows, and one sample's full list.
// Run by scripts/measure-processes.sh; medians and 95th percentiles in milliseconds.
#include <malloc.h>
#include <sys/stat.h>
#include <unistd.h>

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QPainter>
#include <QScrollBar>

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <nlohmann/json.hpp>

#include "metrics/FixtureProcesses.h"
#include "metrics/FixtureProvider.h"
#include "platform/linux/ProcessReader.h"
#include "processes/SimulatedProcessControl.h"
#include "processes/qt/ProcessesController.h"
#include "snapshot/SceneRig.h"
#include "ui/processes/ProcessListView.h"
#include "ui/processes/ProcessesScreen.h"

using namespace trotlet;
using Json = nlohmann::json;

namespace {

constexpr int processCount = 2000;

Json stats(std::vector<double> ms) {
    std::sort(ms.begin(), ms.end());
    auto at = [&](double q) {
        return ms[std::min(ms.size() - 1, std::size_t(q * double(ms.size())))];
    };
    return {{"n", ms.size()}, {"medianMs", at(0.5)}, {"p95Ms", at(0.95)}, {"maxMs", ms.back()}};
}

// The machine is shared: the thread's own CPU time leaves out the time other programs took
// the core, which wall-clock time counts.
double threadMs() {
    timespec t{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &t);
    return double(t.tv_sec) * 1e3 + double(t.tv_nsec) / 1e6;
}

// Wall and CPU time of repeated runs of one step.
struct Timing {
    std::vector<double> wall, cpu;
    template <typename F>
    void run(F&& step) {
        QElapsedTimer t;
        const double c = threadMs();
        t.start();
        step();
        wall.push_back(double(t.nsecsElapsed()) / 1e6);
        cpu.push_back(threadMs() - c);
    }
    Json json() const { return {{"wall", stats(wall)}, {"cpu", stats(cpu)}}; }
};

// A /proc of 2,000 processes shaped like a desktop's: stat, statm, cmdline and exe of each,
// and an /etc/passwd for the owners.
std::filesystem::path generateTree() {
    namespace fs = std::filesystem;
    const fs::path root =
        fs::temp_directory_path() / ("trotlet-proc-bench-" + std::to_string(::getpid()));
    fs::create_directories(root / "etc");
    std::ofstream(root / "etc/passwd")
        << "root:x:0:0:root:/root:/bin/bash\n"
        << "alice:x:" << ::getuid() << ":1000::/home/alice:/bin/bash\n";
    const char* programs[] = {"firefox",     "Web Content", "code",
                              "bash",        "python3",     "kworker/3:1-events",
                              "gnome-shell", "pipewire",    "Isolated Web Co",
                              "systemd"};
    for (int i = 0; i < processCount; ++i) {
        const int pid = 100 + i * 3;
        const fs::path dir = root / "proc" / std::to_string(pid);
        fs::create_directories(dir);
        const char* name = programs[i % std::size(programs)];
        char stat[512];
        std::snprintf(stat, sizeof stat,
                      "%d (%s) S 1 %d %d 0 -1 4194304 1200 0 0 0 %d %d 0 0 20 0 %d 0 %d 1000000 %d "
                      "18446744073709551615 1 1 0 0 0 0 0 0 0 0 0 0 0 0 0 0\n",
                      pid, name, pid, pid, 100 + i % 977, 30 + i % 311, 1 + i % 40, 5000 + i,
                      200 + i % 5000);
        std::ofstream(dir / "stat") << stat;
        std::ofstream(dir / "statm") << "100000 " << 200 + i % 5000 << " 300 10 0 900 0\n";
        std::ofstream(dir / "cmdline") << "/usr/bin/" << name << '\0' << "--flag" << '\0';
        fs::create_symlink("/usr/bin/" + std::string(name), dir / "exe");
    }
    return root;
}

Json benchSample() {
    const auto root = generateTree();
    platform::ProcessReader::Options o;
    o.root = root.string();
    o.selfUid = ::getuid();
    platform::ProcessReader reader(o);
    metrics::ProcessMetrics out;
    reader.read(out, 0, true);  // the first read describes every process once
    Timing sample, floor;
    for (int i = 0; i < 40; ++i) {
        sample.run([&] { reader.read(out, 1.0 + i, true); });
        floor.run([&] { platform::scanStatAndStatm(root.string()); });
    }
    std::filesystem::remove_all(root);
    Json j;
    j["processes"] = out.totalCount.value_or(0);
    j["fullRead"] = sample.json();
    j["floorStatAndStatm"] = floor.json();
    j["cpuRatio"] = j["fullRead"]["cpu"]["medianMs"].get<double>() /
                    j["floorStatAndStatm"]["cpu"]["medianMs"].get<double>();
    return j;
}

std::vector<metrics::ProcessRow> rowsOf(int count) {
    auto s = metrics::fixtureSnapshot(metrics::MetricsFixture::busy, snapshot::sceneTime());
    s.processes.totalCount = count;
    return metrics::fixtureProcessTable(s);
}

// Small blocks in the arena and large ones mapped on their own.
std::size_t heapInUse() {
    const auto m = mallinfo2();
    return m.uordblks + m.hblkhd;
}

Json benchMemory() {
    Json j;
    const std::size_t before = heapInUse();
    auto rows = std::make_unique<std::vector<metrics::ProcessRow>>(rowsOf(processCount));
    const std::size_t sample = heapInUse() - before;
    const std::size_t beforeTable = heapInUse();
    auto controller = std::make_unique<processes::ProcessesController>(
        std::make_unique<processes::SimulatedProcessControl>(), processes::QuitContext{});
    controller->setRows(*rows);
    const std::size_t table = heapInUse() - beforeTable;
    j["rows"] = rows->size();
    j["sampleListBytes"] = sample;
    j["tableBytes"] = table;
    return j;
}

}  // namespace

int main(int argc, char** argv) {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_FONT_DPI", "96");
    QApplication app(argc, argv);
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(10);
    QApplication::setFont(font);

    Json out;
    out["sample"] = benchSample();
    out["memory"] = benchMemory();

    snapshot::SceneRig rig(metrics::MetricsFixture::busy);
    processes::ProcessesController controller(
        std::make_unique<processes::SimulatedProcessControl>(), processes::QuitContext{});
    controller.setRows(rowsOf(processCount));
    ui::ProcessesScreen screen(controller, rig.model(), rig.theme());
    screen.resize(384, 560);
    screen.setAttribute(Qt::WA_DontShowOnScreen);
    screen.show();
    QApplication::processEvents();
    ui::ProcessListView& list = screen.list();
    QWidget* viewport = list.viewport();
    QScrollBar* bar = list.verticalScrollBar();
    list.setOpened(controller.table().at(3).row->pid, true);

    // Repainting the rows in view, into an image as the backing store would.
    for (int scale : {1, 2}) {
        QImage image(viewport->size() * scale, QImage::Format_ARGB32_Premultiplied);
        image.setDevicePixelRatio(scale);
        Timing timing;
        for (int i = 0; i < 200; ++i) {
            bar->setValue(bar->maximum() * (i % 20) / 19);
            timing.run([&] { viewport->render(&image); });
        }
        out["paint"]["scale" + std::to_string(scale)] = timing.json();
    }
    out["paint"]["rowsInView"] = viewport->height() / 28 + 1;

    // Scrolling through the whole list one wheel step at a time.
    {
        Timing timing;
        bar->setValue(0);
        viewport->repaint();
        while (bar->value() < bar->maximum()) {
            timing.run([&] {
                bar->setValue(bar->value() + 3 * 28);
                viewport->repaint();
            });
        }
        out["scroll"] = timing.json();
    }

    // Typing searches, a keystroke at a time: filter, sort, and repaint.
    {
        Timing filter, keystroke;
        for (int round = 0; round < 5; ++round) {
            for (const char* query : {"firefox", "4242", "/usr/lib/", "kworker"}) {
                std::string typed;
                for (const char* c = query; *c; ++c) {
                    typed += *c;
                    processes::ProcessTable table = controller.table();
                    filter.run([&] { table.setQuery(typed); });
                    keystroke.run([&] {
                        controller.setQuery(typed);
                        viewport->repaint();
                    });
                }
                controller.setQuery("");
            }
        }
        out["filter"]["tableOnly"] = filter.json();
        out["filter"]["keystrokeToPixels"] = keystroke.json();
    }

    // A new sample of 2,000 rows arriving while the tab shows.
    {
        Timing timing;
        auto rows = rowsOf(processCount);
        for (int i = 0; i < 30; ++i) {
            for (auto& r : rows) r.cpuPercent = double((r.pid * (i + 7)) % 1000) / 10.0;
            timing.run([&] {
                controller.setRows(rows);
                viewport->repaint();
            });
        }
        out["newSample"] = timing.json();
    }
    out["paintsCounted"] = list.paintCount();
    const std::string text = out.dump(2);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
    return 0;
}
