#pragma once

#include <QObject>
#include <QTimer>

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <vector>

#include "processes/ProcessControl.h"
#include "processes/ProcessTable.h"
#include "processes/QuitFlow.h"
#include "processes/QuitRules.h"

namespace trotlet::processes {

// The Processes tab's state in the running app: the table of the latest full process list,
// the quits under way and the details read for opened rows. It carries out each quit step the
// pure flow asks for through the process control, watches the processes it signalled until they
// end, and reports each process that ended at the user's request once, as `processQuit`.
class ProcessesController : public QObject {
    Q_OBJECT
public:
    // Seconds on a monotonic clock; tests pass their own.
    using Clock = std::function<double()>;

    ProcessesController(std::unique_ptr<ProcessControl> control, QuitContext context,
                        QObject* parent = nullptr);
    ~ProcessesController() override;

    void setClock(Clock clock) { clock_ = std::move(clock); }
    void setSessionPids(std::vector<std::int32_t> pids);

    // A sample's full list.
    void setRows(std::vector<metrics::ProcessRow> rows);
    bool hasSample() const { return hasSample_; }

    const ProcessTable& table() const { return table_; }
    void setSort(ProcessSort sort);
    void setQuery(std::string_view text);
    void setHeld(bool held);
    void select(std::optional<std::int32_t> pid);
    void moveSelection(int delta);
    void selectEdge(bool last);

    QuitBlock block(const metrics::ProcessRow& row) const;
    // The quit under way for the row's process, if any.
    const QuitFlow* flow(const metrics::ProcessRow& row) const;
    // Read once per process, when its details are first shown.
    const std::optional<ProcessDetails>& details(const metrics::ProcessRow& row);

    // The user's actions on a shown process. Quit on one that cannot be quit does nothing.
    void quit(std::int32_t pid);
    void askForce(std::int32_t pid);
    void confirmForce(std::int32_t pid);
    void cancelForce(std::int32_t pid);

    // Looks at the processes being quit (the timer does this while any is).
    void poll();

signals:
    void changed();
    // A process is not responding and the user chose Force Quit: confirm it.
    void forceQuitAsked(std::int32_t pid);
    // A process ended because the user quit it.
    void processQuit();

private:
    struct Quit {
        ProcessIdentity identity;
        QuitFlow flow;
    };
    const metrics::ProcessRow* shownRow(std::int32_t pid) const;
    Quit* quitFor(std::int32_t pid);
    void carryOut(Quit& quit, QuitCommand command);
    void forgetEnded();
    void followWatching();
    double now() const;

    std::unique_ptr<ProcessControl> control_;
    QuitContext context_;
    ProcessTable table_;
    bool hasSample_ = false;
    std::map<std::int32_t, Quit> quits_;
    std::map<std::int32_t, std::pair<ProcessIdentity, std::optional<ProcessDetails>>> details_;
    QTimer pollTimer_;
    Clock clock_;
};

}  // namespace trotlet::processes
