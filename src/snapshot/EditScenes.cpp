#include "snapshot/EditScenes.h"

#include <QApplication>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>

#include "layout/LayoutOps.h"
#include "snapshot/SceneRig.h"
#include "ui/cards/CardView.h"
#include "ui/overview/OverviewView.h"
#include "ui/panel/PanelHeader.h"
#include "ui/panel/PanelWindow.h"

namespace trotlet::snapshot {
namespace {

void mouse(QWidget* target, QEvent::Type type, QPointF at, Qt::MouseButtons buttons) {
    QMouseEvent event(type, at, target->mapToGlobal(at), Qt::LeftButton, buttons, Qt::NoModifier);
    QApplication::sendEvent(target, &event);
}

class EditStage : public SceneStage {
public:
    EditStage() : rig_(metrics::MetricsFixture::normal), window_(rig_.model(), rig_.theme()) {
        // Still frames: the cards stand where the drag has put them, without gliding.
        rig_.model().setReduceMotion(true);
        rig_.layout().commit(layout::LayoutOps::settingHidden("gpu", true, rig_.layout().layout()));
        window_.header().setAnimating(false);
        window_.setAttribute(Qt::WA_DontShowOnScreen);
        window_.show();
        ui::OverviewView& overview = window_.overview();
        overview.setEditing(true);
        // The battery card picked up and carried left, over the heat card, which has made room.
        ui::CardView* battery = overview.card("battery");
        const QPointF hold(battery->width() * 0.5, 44);
        mouse(battery, QEvent::MouseButtonPress, hold, Qt::LeftButton);
        for (int step = 1; step <= 6; ++step)
            mouse(battery, QEvent::MouseMove, hold + QPointF(-15 * step, 3 * step), Qt::LeftButton);
        QScrollBar* bar = window_.overviewScroll().verticalScrollBar();
        bar->setValue(bar->maximum());
    }
    QImage render(panel::ColorScheme scheme) override { return rig_.render(window_, scheme); }

private:
    SceneRig rig_;
    ui::PanelWindow window_;
};

}  // namespace

void addEditScenes(std::vector<Scene>& scenes) {
    scenes.push_back({"panel-edit", [] { return std::make_unique<EditStage>(); }});
}

}  // namespace trotlet::snapshot
