#pragma once

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

#include "metrics/MetricsSnapshot.h"
#include "processes/ProcessQuery.h"
#include "processes/ProcessSort.h"

namespace trotlet::processes {

// The Processes list as the user sees it: the latest sample's rows that match the query, in the
// chosen order, with a selection that follows its process from sample to sample.
//
// While the list is held (the pointer is on it, aiming) its order stands still, so the row under
// the pointer is the row the user aimed at: rows keep their places and only their readings change,
// a process that ends stays in its place marked as ended, and a new one joins at the end. Letting
// go, or changing the sort or the query, orders everything afresh.
class ProcessTable {
public:
    struct Entry {
        const metrics::ProcessRow* row = nullptr;
        bool ended = false;  // gone since the list was held
    };

    void setRows(std::vector<metrics::ProcessRow> rows);
    void setSort(ProcessSort sort);
    void setQuery(std::string_view text);
    void setHeld(bool held);

    const ProcessSort& sort() const { return sort_; }
    const ProcessQuery& query() const { return query_; }
    bool held() const { return held_; }

    // The rows shown, in order.
    std::size_t size() const { return order_.size(); }
    Entry at(std::size_t index) const;
    // Every process of the latest sample, shown or not.
    const std::vector<metrics::ProcessRow>& rows() const { return rows_; }
    std::size_t totalCount() const { return rows_.size(); }
    std::optional<std::size_t> indexOf(std::int32_t pid) const;

    std::optional<std::int32_t> selectedPid() const;
    std::optional<std::size_t> selectedIndex() const;
    // Selects the shown row of this PID; a PID that is not shown clears the selection.
    void select(std::optional<std::int32_t> pid);
    // Moves the selection by `delta` rows, stopping at either end; with nothing selected, a
    // step down selects the first row and a step up the last.
    void moveSelection(int delta);
    void selectEdge(bool last);

private:
    struct Ref {
        std::uint32_t index = 0;
        bool ended = false;
    };
    const metrics::ProcessRow& rowOf(const Ref& ref) const {
        return ref.ended ? ended_[ref.index] : rows_[ref.index];
    }
    void reorder();
    void holdOrder(std::vector<metrics::ProcessRow> previousRows,
                   std::vector<metrics::ProcessRow> previousEnded);
    void refreshSelection();

    std::vector<metrics::ProcessRow> rows_;
    std::vector<metrics::ProcessRow> ended_;
    std::vector<Ref> order_;
    ProcessSort sort_;
    ProcessQuery query_;
    bool held_ = false;
    // The selected process: its row as last seen (PID and start time tell it apart).
    std::optional<metrics::ProcessRow> selected_;
    std::optional<std::size_t> selectedIndex_;
};

}  // namespace trotlet::processes
