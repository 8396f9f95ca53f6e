#include "ui/shop/ShopInstall.h"

#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"
#include "ui/shop/GoldenFishView.h"
#include "ui/shop/ShopScreen.h"

namespace trotlet::ui {

ShopScreen* installShop(PanelWindow& window, PanelModel& model, shop::ShopRuntime& shop,
                        const ThemeStore& theme) {
    auto* screen = new ShopScreen(model, shop, theme);
    window.setTabScreen(panel::PanelTab::shop, screen);
    new GoldenFishView(shop, model, theme, &window.header());
    return screen;
}

}  // namespace trotlet::ui
