#include "ui/shop/ShopInstall.h"

#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"
#include "ui/shop/GoldenFishView.h"
#include "ui/shop/ShopScreen.h"

namespace trotlet::ui {

void installShop(PanelWindow& window, PanelModel& model, shop::ShopRuntime& shop,
                 const ThemeStore& theme, std::function<void(ShopScreen&)> built) {
    new GoldenFishView(shop, model, theme, &window.header());
    window.setTabScreen(panel::PanelTab::shop,
                        [&model, &shop, &theme, built = std::move(built)]() -> QWidget* {
                            auto* screen = new ShopScreen(model, shop, theme);
                            if (built) built(*screen);
                            return screen;
                        });
}

}  // namespace trotlet::ui
