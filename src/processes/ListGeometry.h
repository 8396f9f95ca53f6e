#pragma once

#include <cstddef>
#include <optional>
#include <vector>

namespace trotlet::processes {

// Where the rows of a long list sit when a few of them are opened to show their details: every
// row is `rowHeight` tall and an opened row taller by its own extra. Answers in O(opened rows),
// so a list of thousands paints only what is in view.
struct ListGeometry {
    struct Opened {
        std::size_t index = 0;
        double extra = 0;
    };
    std::size_t count = 0;
    double rowHeight = 0;
    std::vector<Opened> opened;  // by ascending index

    double top(std::size_t index) const;
    double height(std::size_t index) const;
    double total() const { return top(count); }
    // The row at `y` (from the list's top), if any.
    std::optional<std::size_t> indexAt(double y) const;
};

}  // namespace trotlet::processes
