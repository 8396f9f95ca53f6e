#include "processes/qt/ProcessesController.h"

#include <QElapsedTimer>

#include <unordered_set>

namespace trotlet::processes {
namespace {
constexpr int pollIntervalMs = 200;
}

ProcessesController::ProcessesController(std::unique_ptr<ProcessControl> control,
                                         QuitContext context, QObject* parent)
    : QObject(parent), control_(std::move(control)), context_(std::move(context)) {
    pollTimer_.setInterval(pollIntervalMs);
    connect(&pollTimer_, &QTimer::timeout, this, &ProcessesController::poll);
    auto started = std::make_shared<QElapsedTimer>();
    started->start();
    clock_ = [started] { return double(started->nsecsElapsed()) / 1e9; };
}

ProcessesController::~ProcessesController() {
    for (const auto& [pid, quit] : quits_) control_->release(quit.identity);
}

double ProcessesController::now() const { return clock_(); }

void ProcessesController::setSessionPids(std::vector<std::int32_t> pids) {
    context_.sessionPids = std::move(pids);
    emit changed();
}

void ProcessesController::setRows(std::vector<metrics::ProcessRow> rows) {
    hasSample_ = true;
    table_.setRows(std::move(rows));
    forgetEnded();
    emit changed();
}

void ProcessesController::setSort(ProcessSort sort) {
    table_.setSort(sort);
    emit changed();
}

void ProcessesController::setQuery(std::string_view text) {
    table_.setQuery(text);
    emit changed();
}

void ProcessesController::setHeld(bool held) {
    if (held == table_.held()) return;
    table_.setHeld(held);
    emit changed();
}

void ProcessesController::select(std::optional<std::int32_t> pid) {
    table_.select(pid);
    emit changed();
}

void ProcessesController::moveSelection(int delta) {
    table_.moveSelection(delta);
    emit changed();
}

void ProcessesController::selectEdge(bool last) {
    table_.selectEdge(last);
    emit changed();
}

QuitBlock ProcessesController::block(const metrics::ProcessRow& row) const {
    return quitBlock(row, context_);
}

const QuitFlow* ProcessesController::flow(const metrics::ProcessRow& row) const {
    const auto it = quits_.find(row.pid);
    if (it == quits_.end() || !(it->second.identity == ProcessIdentity::of(row))) return nullptr;
    return &it->second.flow;
}

const std::optional<ProcessDetails>& ProcessesController::details(const metrics::ProcessRow& row) {
    const ProcessIdentity identity = ProcessIdentity::of(row);
    auto it = details_.find(row.pid);
    if (it == details_.end() || !(it->second.first == identity))
        it = details_.insert_or_assign(row.pid, std::pair(identity, control_->details(identity)))
                 .first;
    return it->second.second;
}

const metrics::ProcessRow* ProcessesController::shownRow(std::int32_t pid) const {
    const auto index = table_.indexOf(pid);
    if (!index) return nullptr;
    const auto entry = table_.at(*index);
    return entry.ended ? nullptr : entry.row;
}

ProcessesController::Quit* ProcessesController::quitFor(std::int32_t pid) {
    const auto* row = shownRow(pid);
    if (!row) return nullptr;
    const auto it = quits_.find(pid);
    if (it == quits_.end() || !(it->second.identity == ProcessIdentity::of(*row))) return nullptr;
    return &it->second;
}

void ProcessesController::quit(std::int32_t pid) {
    const auto* row = shownRow(pid);
    if (!row || block(*row) != QuitBlock::none) return;
    Quit* quit = quitFor(pid);
    if (!quit) {
        if (const auto old = quits_.find(pid); old != quits_.end())
            control_->release(old->second.identity);
        quit = &quits_.insert_or_assign(pid, Quit{ProcessIdentity::of(*row), {}}).first->second;
    }
    const bool wasNotResponding = quit->flow.stage() == QuitStage::notResponding;
    carryOut(*quit, quit->flow.quit(now()));
    if (wasNotResponding && quit->flow.stage() == QuitStage::confirmingForce)
        emit forceQuitAsked(pid);
    emit changed();
}

void ProcessesController::askForce(std::int32_t pid) {
    Quit* quit = quitFor(pid);
    if (!quit || quit->flow.stage() != QuitStage::notResponding) return;
    quit->flow.askForce();
    emit forceQuitAsked(pid);
    emit changed();
}

void ProcessesController::confirmForce(std::int32_t pid) {
    if (Quit* quit = quitFor(pid)) carryOut(*quit, quit->flow.confirmForce(now()));
    emit changed();
}

void ProcessesController::cancelForce(std::int32_t pid) {
    if (Quit* quit = quitFor(pid)) quit->flow.cancelForce();
    emit changed();
}

void ProcessesController::carryOut(Quit& quit, QuitCommand command) {
    switch (command) {
        case QuitCommand::none:
            break;
        case QuitCommand::terminate:
        case QuitCommand::kill: {
            const auto signal =
                command == QuitCommand::kill ? QuitSignal::kill : QuitSignal::terminate;
            carryOut(quit, quit.flow.delivered(control_->send(quit.identity, signal), now()));
            break;
        }
        case QuitCommand::announce:
            control_->release(quit.identity);
            emit processQuit();
            break;
    }
    followWatching();
}

void ProcessesController::poll() {
    bool any = false;
    for (auto& [pid, quit] : quits_) {
        if (!quit.flow.watching()) continue;
        const QuitStage before = quit.flow.stage();
        carryOut(quit, quit.flow.observe(control_->isRunning(quit.identity), now()));
        any = any || quit.flow.stage() != before;
    }
    followWatching();
    if (any) emit changed();
}

void ProcessesController::followWatching() {
    bool watching = false;
    for (const auto& [pid, quit] : quits_) watching = watching || quit.flow.watching();
    if (watching && !pollTimer_.isActive()) pollTimer_.start();
    if (!watching) pollTimer_.stop();
}

void ProcessesController::forgetEnded() {
    // A quit is kept while its process is listed (or held in place after it ended), so the row
    // can say how it went.
    std::unordered_set<std::int32_t> listed;
    listed.reserve(table_.rows().size());
    for (const auto& row : table_.rows()) listed.insert(row.pid);
    for (std::size_t i = 0; i < table_.size(); ++i)
        if (table_.at(i).ended) listed.insert(table_.at(i).row->pid);
    for (auto it = quits_.begin(); it != quits_.end();) {
        if (!listed.count(it->first) && !it->second.flow.watching()) {
            control_->release(it->second.identity);
            it = quits_.erase(it);
        } else {
            ++it;
        }
    }
    for (auto it = details_.begin(); it != details_.end();)
        it = listed.count(it->first) ? std::next(it) : details_.erase(it);
}

}  // namespace trotlet::processes
