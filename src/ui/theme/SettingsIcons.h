#pragma once

#include <QColor>

#include <functional>
#include <string_view>

class QPainter;

namespace trotlet::ui::icons {

// The symbols of Settings and the welcome tour, on the same 24-unit grid and in the same hand as
// the rest (filled shapes, round strokes of about 2 units). Icons::paint finds them here.
using Drawer = std::function<void(QPainter&, const QColor&)>;
const Drawer* settingsIcon(std::string_view name);

}  // namespace trotlet::ui::icons
