#include "processes/QuitFlow.h"

namespace trotlet::processes {

bool QuitFlow::watching() const {
    return stage_ == QuitStage::quitting || stage_ == QuitStage::notResponding ||
           stage_ == QuitStage::confirmingForce || stage_ == QuitStage::forceQuitting;
}

void QuitFlow::enter(QuitStage stage, double now) {
    stage_ = stage;
    since_ = now;
    if (stage != QuitStage::failed) problem_ = QuitProblem::none;
}

QuitCommand QuitFlow::end(double now) {
    const bool ours = signalled_;
    enter(QuitStage::ended, now);
    return ours ? QuitCommand::announce : QuitCommand::none;
}

QuitCommand QuitFlow::quit(double now) {
    switch (stage_) {
        case QuitStage::idle:
        case QuitStage::failed:
            enter(QuitStage::quitting, now);
            return QuitCommand::terminate;
        case QuitStage::notResponding:
            askForce();
            return QuitCommand::none;
        default:
            return QuitCommand::none;
    }
}

void QuitFlow::askForce() {
    if (stage_ == QuitStage::notResponding) stage_ = QuitStage::confirmingForce;
}

QuitCommand QuitFlow::confirmForce(double now) {
    if (stage_ != QuitStage::confirmingForce) return QuitCommand::none;
    enter(QuitStage::forceQuitting, now);
    return QuitCommand::kill;
}

void QuitFlow::cancelForce() {
    if (stage_ == QuitStage::confirmingForce) stage_ = QuitStage::notResponding;
}

QuitCommand QuitFlow::delivered(SignalOutcome outcome, double now) {
    if (stage_ != QuitStage::quitting && stage_ != QuitStage::forceQuitting)
        return QuitCommand::none;
    switch (outcome) {
        case SignalOutcome::sent:
            signalled_ = true;
            return QuitCommand::none;
        case SignalOutcome::gone:
            // Gone before SIGKILL arrived: the earlier SIGTERM did its work after all.
            if (stage_ == QuitStage::forceQuitting) return end(now);
            problem_ = QuitProblem::alreadyGone;
            break;
        case SignalOutcome::replaced:
            problem_ = QuitProblem::replaced;
            break;
        case SignalOutcome::denied:
            problem_ = QuitProblem::permissionDenied;
            break;
        case SignalOutcome::failed:
            problem_ = QuitProblem::failed;
            break;
    }
    enter(QuitStage::failed, now);
    return QuitCommand::none;
}

QuitCommand QuitFlow::observe(bool running, double now) {
    if (!watching()) return QuitCommand::none;
    if (!running) return end(now);
    if (stage_ == QuitStage::quitting && now - since_ >= forceAfterSec)
        enter(QuitStage::notResponding, now);
    return QuitCommand::none;
}

}  // namespace trotlet::processes
