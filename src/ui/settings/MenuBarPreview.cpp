#include "ui/settings/MenuBarPreview.h"

#include <QPainter>

#include <algorithm>
#include <cmath>

#include "mascot/MascotCharacter.h"
#include "panel/SettingsScreen.h"
#include "settings/AppSettings.h"
#include "ui/panel/PanelModel.h"
#include "ui/theme/Icons.h"
#include "ui/theme/ThemeStore.h"

namespace trotlet::ui {
namespace {

constexpr int itemSize = 22;  // the mascot at the menu bar's size
constexpr qreal maxFps = 24;

std::optional<double> weatherCelsius(const PanelModel& model) {
    if (const auto& w = model.weather()) return w->temperatureC;
    return std::nullopt;
}

}  // namespace

MenuBarPreview::MenuBarPreview(PanelModel& model, const ThemeStore& theme, QWidget* parent)
    : QWidget(parent), model_(model), theme_(theme) {
    setAccessibleName(QStringLiteral("Menu bar preview"));
    setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    setFixedHeight(Metrics::trayBarHeight + 2 * Metrics::spacing);
    timer_.setTimerType(Qt::PreciseTimer);
    connect(&timer_, &QTimer::timeout, this, [this] {
        ++frame_;
        update();
    });
    connect(&model_, &PanelModel::sampleChanged, this, &MenuBarPreview::refresh);
    connect(&model_, &PanelModel::mascotChanged, this, [this] {
        reschedule();
        refresh();
    });
    connect(&model_, &PanelModel::weatherChanged, this, &MenuBarPreview::refresh);
    connect(&model_, &PanelModel::reduceMotionChanged, this, &MenuBarPreview::reschedule);
    connect(&theme_, &ThemeStore::changed, this, qOverload<>(&QWidget::update));
    auto& s = model_.settings();
    for (settings::SettingsGroup* group : std::initializer_list<settings::SettingsGroup*>{
             &s.menuBar(), &s.monitoring(), &s.weather()})
        observers_.emplace_back(group, group->observe([this](const std::string&) {
            reschedule();
            refresh();
        }));
    refresh();
}

MenuBarPreview::~MenuBarPreview() {
    for (const auto& [group, id] : observers_) group->unobserve(id);
}

QSize MenuBarPreview::sizeHint() const {
    return QSize(Metrics::gridWidth, Metrics::trayBarHeight + 2 * Metrics::spacing);
}

QString MenuBarPreview::text() const {
    return QString::fromStdString(
        panel::trayPreview(model_.settings(), model_.sample(), weatherCelsius(model_)).text);
}

void MenuBarPreview::refresh() {
    setAccessibleDescription(text());
    update();
}

void MenuBarPreview::reschedule() {
    const auto& menuBar = model_.settings().menuBar();
    const bool run =
        isVisible() && !model_.reduceMotion() && menuBar.showMascot() && !menuBar.pauseAnimation();
    if (!run) {
        timer_.stop();
        return;
    }
    const double fps = std::clamp(model_.mascotFramesPerSecond(), 1.0, maxFps);
    const int interval = int(std::lround(1000.0 / fps));
    if (!timer_.isActive() || timer_.interval() != interval) timer_.start(interval);
}

void MenuBarPreview::showEvent(QShowEvent*) { reschedule(); }
void MenuBarPreview::hideEvent(QHideEvent*) { reschedule(); }

void MenuBarPreview::paintEvent(QPaintEvent*) {
    const Theme& t = theme_.theme();
    const Palette& pal = t.palette();
    const auto preview =
        panel::trayPreview(model_.settings(), model_.sample(), weatherCelsius(model_));
    QPainter p(this);
    p.setRenderHint(QPainter::Antialiasing);
    const QRectF bar(0, Metrics::spacing, width(), Metrics::trayBarHeight);
    // A hairline keeps the bar's edge visible on a dark surface.
    p.setPen(QPen(pal.border, 1));
    p.setBrush(pal.trayBar);
    p.drawRoundedRect(bar.adjusted(0.5, 0.5, -0.5, -0.5), 8, 8);

    // From the right: the clock, two neighbours, then our item.
    QFont font = t.type().label;
    p.setFont(font);
    const QFontMetricsF fm(font);
    qreal right = bar.right() - 10;
    const QString clock = QStringLiteral("14:30");
    p.setPen(pal.trayText);
    p.drawText(QRectF(right - fm.horizontalAdvance(clock), bar.top(),
                      fm.horizontalAdvance(clock) + 1, bar.height()),
               Qt::AlignVCenter | Qt::AlignRight, clock);
    right -= fm.horizontalAdvance(clock) + 14;
    QColor neighbour = pal.trayText;
    neighbour.setAlphaF(0.45);
    p.setBrush(neighbour);
    p.setPen(Qt::NoPen);
    for (int i = 0; i < 2; ++i) {
        p.drawRoundedRect(QRectF(right - 12, bar.center().y() - 6, 12, 12), 3, 3);
        right -= 20;
    }
    right -= 4;

    const QString text = QString::fromStdString(preview.text);
    const qreal textWidth = text.isEmpty() ? 0 : fm.horizontalAdvance(text);
    const qreal gap = text.isEmpty() ? 0 : 4;
    const qreal itemWidth = itemSize + gap + textWidth;
    const qreal left = right - itemWidth;
    // A soft highlight shows which item is ours.
    QColor mark = pal.trayText;
    mark.setAlphaF(0.12);
    p.setBrush(mark);
    p.drawRoundedRect(QRectF(left - 6, bar.top() + 3, itemWidth + 12, bar.height() - 6), 6, 6);

    const qreal iconX = preview.textFirst ? left + textWidth + gap : left;
    const qreal textX = preview.textFirst ? left : left + itemSize + gap;
    const QRectF icon(iconX, bar.center().y() - itemSize / 2.0, itemSize, itemSize);
    if (preview.mascot) {
        const auto& character = mascot::characterFor(model_.mascotId());
        p.drawImage(icon, renderer_.frame(character, model_.mascotVisual(), frame_, itemSize,
                                          devicePixelRatioF()));
    } else {
        Icons::paint(p, icon.adjusted(3, 3, -3, -3), "pawprint.fill", pal.trayText);
    }
    if (!text.isEmpty()) {
        p.setPen(pal.trayText);
        p.drawText(QRectF(textX, bar.top(), textWidth + 1, bar.height()),
                   Qt::AlignVCenter | Qt::AlignLeft, text);
    }
}

}  // namespace trotlet::ui
