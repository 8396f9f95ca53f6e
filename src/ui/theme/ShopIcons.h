#pragma once

#include <QColor>

#include <functional>
#include <string_view>

class QPainter;

namespace trotlet::ui {

// Draws a symbol on the 24-unit grid `Icons::paint` scales.
using IconDrawer = std::function<void(QPainter&, const QColor&)>;

// The Shop's symbols, which `Icons` looks up after its own.
const IconDrawer* shopIcon(std::string_view name);

}  // namespace trotlet::ui
