#include "snapshot/ProcessScenes.h"

#include "metrics/FixtureProcesses.h"
#include "processes/SimulatedProcessControl.h"
#include "processes/qt/ProcessesController.h"
#include "snapshot/SceneRig.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"
#include "ui/processes/ProcessListView.h"
#include "ui/processes/ProcessesScreen.h"

namespace trotlet::snapshot {
namespace {

using namespace std::chrono_literals;

struct Setup {
    std::string query;
    std::vector<std::string> opened;  // by name, in list order: a name twice opens two rows
    std::string selected;
    std::string forceQuit;  // asked whether to force this one
};

// Command lines and start times for the rows a scene opens.
void describe(processes::SimulatedProcessControl& control,
              const std::vector<metrics::ProcessRow>& rows) {
    struct Known {
        const char* name;
        const char* commandLine;
        std::chrono::minutes age;
    };
    const Known known[] = {
        {"firefox", "/usr/lib/firefox/firefox --name firefox --new-window https://trotlet.app",
         192min},
        {"code", "/usr/share/code/code --unity-launch /home/alice/src/trotlet", 47min},
        {"systemd", "/usr/lib/systemd/systemd --user", 3 * 24 * 60min + 4 * 60min},
        {"systemd-resolved", "/usr/lib/systemd/systemd-resolved", 3 * 24 * 60min + 4 * 60min},
        {"gnome-shell", "/usr/bin/gnome-shell", 3 * 24 * 60min + 4 * 60min},
    };
    for (const auto& row : rows)
        for (const auto& k : known)
            if (row.name == k.name) {
                auto& p = control.process(row.pid);
                p.details.commandLine = row.pid == 1 ? "/sbin/init splash" : k.commandLine;
                p.details.startTime = sceneTime() - k.age;
                if (row.name == "code") p.ignoresTerminate = true;
            }
}

class ProcessesStage : public SceneStage {
public:
    ProcessesStage(metrics::MetricsFixture fixture, const Setup& setup)
        : rig_(fixture), window_(rig_.model(), rig_.theme()) {
        auto control = std::make_unique<processes::SimulatedProcessControl>();
        const auto rows = metrics::fixtureProcessTable(rig_.sample());
        describe(*control, rows);
        processes::QuitContext context;
        context.selfPid = 7777;
        controller_ = std::make_unique<processes::ProcessesController>(std::move(control), context);
        controller_->setClock([this] { return clock_; });
        controller_->setQuery(setup.query);
        controller_->setRows(rows);
        screen_ = new ui::ProcessesScreen(*controller_, rig_.model(), rig_.theme());
        window_.setTabScreen(panel::PanelTab::processes, screen_);
        window_.showTab(panel::PanelTab::processes);
        window_.header().setAnimating(false);
        window_.setAttribute(Qt::WA_DontShowOnScreen);
        window_.show();
        const auto& table = controller_->table();
        auto pidOf = [&](const std::string& name) -> std::optional<std::int32_t> {
            for (std::size_t i = 0; i < table.size(); ++i)
                if (table.at(i).row->name == name) return table.at(i).row->pid;
            return std::nullopt;
        };
        std::vector<std::string> toOpen = setup.opened;
        for (std::size_t i = 0; i < table.size() && !toOpen.empty(); ++i) {
            const auto it = std::find(toOpen.begin(), toOpen.end(), table.at(i).row->name);
            if (it == toOpen.end()) continue;
            screen_->list().setOpened(table.at(i).row->pid, true);
            toOpen.erase(it);
        }
        if (const auto pid = pidOf(setup.selected)) controller_->select(*pid);
        if (const auto pid = pidOf(setup.forceQuit)) {
            // Quit, then five seconds without an answer, then Force Quit.
            controller_->quit(*pid);
            clock_ = processes::QuitFlow::forceAfterSec + 0.2;
            controller_->poll();
            controller_->askForce(*pid);
        }
    }
    QImage render(panel::ColorScheme scheme) override { return rig_.render(window_, scheme); }

private:
    SceneRig rig_;
    ui::PanelWindow window_;
    std::unique_ptr<processes::ProcessesController> controller_;
    ui::ProcessesScreen* screen_ = nullptr;
    double clock_ = 0;
};

}  // namespace

void addProcessScenes(std::vector<Scene>& scenes) {
    using metrics::MetricsFixture;
    auto add = [&](std::string name, MetricsFixture fixture, Setup setup) {
        scenes.push_back({std::move(name), [fixture, setup] {
                              return std::make_unique<ProcessesStage>(fixture, setup);
                          }});
    };
    add("panel-processes", MetricsFixture::busy, {{}, {"firefox"}, "firefox", {}});
    add("panel-processes-search", MetricsFixture::busy, {"firefox", {}, {}, {}});
    add("panel-processes-quit", MetricsFixture::busy, {{}, {"code"}, "code", "code"});
    add("panel-processes-protected", MetricsFixture::normal,
        {"systemd", {"systemd", "systemd", "systemd-resolved"}, {}, {}});
}

}  // namespace trotlet::snapshot
