#pragma once

#include "processes/ProcessControl.h"

namespace trotlet::processes {

// Where quitting one process stands.
enum class QuitStage {
    idle,
    quitting,         // asked to quit (SIGTERM); waiting for it to end
    notResponding,    // still running `forceAfterSec` after the request: Force Quit is offered
    confirmingForce,  // the user is asked whether to force it
    forceQuitting,    // killed (SIGKILL); waiting for the kernel to end it
    ended,            // ended after the user's request
    failed,           // the request could not be made; `problem` says why
};

enum class QuitProblem { none, alreadyGone, replaced, permissionDenied, failed };

// What the owner must do after a step.
enum class QuitCommand {
    none,
    terminate,  // send SIGTERM and report the outcome with `delivered`
    kill,       // send SIGKILL and report the outcome with `delivered`
    announce,   // the process ended at the user's request: count it, once
};

// Quitting one process, as a state machine with the time passed in (seconds on a monotonic
// clock). The owner carries out the commands and reports what it sees; `announce` comes at
// most once per flow, and only for a process that ended after a signal this flow sent.
class QuitFlow {
public:
    static constexpr double forceAfterSec = 5;

    QuitStage stage() const { return stage_; }
    QuitProblem problem() const { return problem_; }
    // When the current stage began.
    double since() const { return since_; }
    // Whether the process is being watched for its end.
    bool watching() const;

    // Quit (a button, the menu or Delete): asks a running process to quit; on one that is not
    // responding, asks whether to force it. A failed attempt may be tried again.
    QuitCommand quit(double now);
    // Force Quit, offered once the process has not responded: asks for confirmation.
    void askForce();
    QuitCommand confirmForce(double now);
    void cancelForce();

    QuitCommand delivered(SignalOutcome outcome, double now);
    // A look at the process: still running, or ended.
    QuitCommand observe(bool running, double now);

private:
    void enter(QuitStage stage, double now);
    QuitCommand end(double now);

    QuitStage stage_ = QuitStage::idle;
    QuitProblem problem_ = QuitProblem::none;
    double since_ = 0;
    bool signalled_ = false;
};

}  // namespace trotlet::processes
