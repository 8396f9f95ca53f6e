#pragma once

namespace trotlet::shop {
class ShopRuntime;
}

namespace trotlet::ui {

class PanelModel;
class PanelWindow;
class ShopScreen;
class ThemeStore;

// Puts the Shop into a panel: the Shop tab's screen, and the Golden Fish over the header.
// The window owns both.
ShopScreen* installShop(PanelWindow& window, PanelModel& model, shop::ShopRuntime& shop,
                        const ThemeStore& theme);

}  // namespace trotlet::ui
