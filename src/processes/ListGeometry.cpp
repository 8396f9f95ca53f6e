#include "processes/ListGeometry.h"

#include <cmath>

namespace trotlet::processes {

double ListGeometry::top(std::size_t index) const {
    double y = double(index) * rowHeight;
    for (const Opened& o : opened) {
        if (o.index >= index) break;
        y += o.extra;
    }
    return y;
}

double ListGeometry::height(std::size_t index) const {
    for (const Opened& o : opened)
        if (o.index == index) return rowHeight + o.extra;
    return rowHeight;
}

std::optional<std::size_t> ListGeometry::indexAt(double y) const {
    if (y < 0 || rowHeight <= 0) return std::nullopt;
    double shift = 0;
    for (const Opened& o : opened) {
        const double openedTop = double(o.index) * rowHeight + shift;
        if (y < openedTop) break;
        if (y < openedTop + rowHeight + o.extra)
            return o.index < count ? std::optional(o.index) : std::nullopt;
        shift += o.extra;
    }
    const auto index = std::size_t(std::floor((y - shift) / rowHeight));
    return index < count ? std::optional(index) : std::nullopt;
}

}  // namespace trotlet::processes
