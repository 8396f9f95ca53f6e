#pragma once

#include <functional>

namespace trotlet::shop {
class ShopRuntime;
}

namespace trotlet::ui {

class PanelModel;
class PanelWindow;
class ShopScreen;
class ThemeStore;

// Puts the Shop into a panel: the Golden Fish over the header at once, and the Shop tab's
// screen when that tab is first shown (`built` hears of it then, to wire it up). The window
// owns both.
void installShop(PanelWindow& window, PanelModel& model, shop::ShopRuntime& shop,
                 const ThemeStore& theme, std::function<void(ShopScreen&)> built = {});

}  // namespace trotlet::ui
