#include "processes/ProcessTable.h"

#include <algorithm>
#include <unordered_map>

namespace trotlet::processes {

void ProcessTable::setRows(std::vector<metrics::ProcessRow> rows) {
    std::vector<metrics::ProcessRow> previous = std::move(rows_);
    std::vector<metrics::ProcessRow> previousEnded = std::move(ended_);
    rows_ = std::move(rows);
    ended_.clear();
    if (held_)
        holdOrder(std::move(previous), std::move(previousEnded));
    else
        reorder();
}

void ProcessTable::setSort(ProcessSort sort) {
    if (sort == sort_) return;
    sort_ = sort;
    reorder();
}

void ProcessTable::setQuery(std::string_view text) {
    ProcessQuery query(text);
    if (query.text() == query_.text()) return;
    query_ = std::move(query);
    reorder();
}

void ProcessTable::setHeld(bool held) {
    if (held == held_) return;
    held_ = held;
    if (!held_) reorder();
}

ProcessTable::Entry ProcessTable::at(std::size_t index) const {
    const Ref& ref = order_.at(index);
    return {&rowOf(ref), ref.ended};
}

std::optional<std::size_t> ProcessTable::indexOf(std::int32_t pid) const {
    for (std::size_t i = 0; i < order_.size(); ++i)
        if (rowOf(order_[i]).pid == pid) return i;
    return std::nullopt;
}

void ProcessTable::reorder() {
    ended_.clear();
    order_.clear();
    order_.reserve(rows_.size());
    for (std::uint32_t i = 0; i < rows_.size(); ++i)
        if (query_.matches(rows_[i])) order_.push_back({i, false});
    std::sort(order_.begin(), order_.end(), [this](const Ref& a, const Ref& b) {
        return sortsBefore(rows_[a.index], rows_[b.index], sort_);
    });
    refreshSelection();
}

void ProcessTable::holdOrder(std::vector<metrics::ProcessRow> previousRows,
                             std::vector<metrics::ProcessRow> previousEnded) {
    std::unordered_map<std::int32_t, std::uint32_t> byPid;
    byPid.reserve(rows_.size());
    for (std::uint32_t i = 0; i < rows_.size(); ++i) byPid.emplace(rows_[i].pid, i);
    std::vector<bool> placed(rows_.size(), false);
    std::vector<Ref> order;
    order.reserve(order_.size());
    for (const Ref& ref : order_) {
        metrics::ProcessRow& before =
            ref.ended ? previousEnded[ref.index] : previousRows[ref.index];
        const auto found = byPid.find(before.pid);
        if (!ref.ended && found != byPid.end() && sameProcess(rows_[found->second], before)) {
            order.push_back({found->second, false});
            placed[found->second] = true;
        } else {
            ended_.push_back(std::move(before));
            order.push_back({std::uint32_t(ended_.size() - 1), true});
        }
    }
    // Newcomers go below, in the list's order among themselves.
    const std::size_t firstNew = order.size();
    for (std::uint32_t i = 0; i < rows_.size(); ++i)
        if (!placed[i] && query_.matches(rows_[i])) order.push_back({i, false});
    std::sort(order.begin() + long(firstNew), order.end(), [this](const Ref& a, const Ref& b) {
        return sortsBefore(rows_[a.index], rows_[b.index], sort_);
    });
    order_ = std::move(order);
    refreshSelection();
}

void ProcessTable::refreshSelection() {
    selectedIndex_.reset();
    if (!selected_) return;
    for (std::size_t i = 0; i < order_.size(); ++i) {
        const auto& row = rowOf(order_[i]);
        if (sameProcess(row, *selected_)) {
            selectedIndex_ = i;
            selected_ = row;
            return;
        }
    }
    // The selected process has gone: nothing else takes its place, so a key press meant for
    // it can never reach another process.
    selected_.reset();
}

std::optional<std::int32_t> ProcessTable::selectedPid() const {
    return selected_ ? std::optional(selected_->pid) : std::nullopt;
}

std::optional<std::size_t> ProcessTable::selectedIndex() const { return selectedIndex_; }

void ProcessTable::select(std::optional<std::int32_t> pid) {
    selected_.reset();
    selectedIndex_.reset();
    if (!pid) return;
    if (const auto index = indexOf(*pid)) {
        selected_ = rowOf(order_[*index]);
        selectedIndex_ = index;
    }
}

void ProcessTable::moveSelection(int delta) {
    if (order_.empty() || delta == 0) return;
    long index;
    if (!selectedIndex_)
        index = delta > 0 ? 0 : long(order_.size()) - 1;
    else
        index = std::clamp(long(*selectedIndex_) + delta, 0L, long(order_.size()) - 1);
    select(rowOf(order_[std::size_t(index)]).pid);
}

void ProcessTable::selectEdge(bool last) {
    if (order_.empty()) return;
    select(rowOf(order_[last ? order_.size() - 1 : 0]).pid);
}

}  // namespace trotlet::processes
