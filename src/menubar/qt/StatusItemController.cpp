#include "menubar/qt/StatusItemController.h"

#include <chrono>

#include <QPainter>
#include <QPainterPath>

#include "mascot/MoodLine.h"
#include "mascot/qt/MascotAnimator.h"
#include "menubar/Format.h"
#include "menubar/qt/TickerFont.h"
#include "metrics/qt/MetricsStore.h"
#include "platform/freedesktop/TrayItem.h"
#include "settings/AppSettings.h"

namespace trotlet::menubar {

namespace {

double secondsNow() {
    using namespace std::chrono;
    return duration<double>(steady_clock::now().time_since_epoch()).count();
}

// The still glyph shown when the mascot is switched off: a small paw, so the item keeps a
// place to click even when the host shows no text.
QImage pawGlyph(int size) {
    QImage image(size, size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(QColor(0x8a, 0x8a, 0x8a));
    const double s = size / 22.0;
    painter.drawEllipse(QRectF(6 * s, 10 * s, 10 * s, 9 * s));
    for (const QPointF toe : {QPointF(4, 6), QPointF(8.5, 3), QPointF(13.5, 3), QPointF(18, 6)})
        painter.drawEllipse(QPointF(toe.x() * s, toe.y() * s), 2.2 * s, 2.6 * s);
    return image;
}

// The short readings line of the tooltip: "CPU 37% · Memory 64% · 72°C · ↓1.2 MB/s".
QString readingsLine(const metrics::MetricsSnapshot& s, TemperatureUnit unit, NetworkUnit net) {
    QStringList parts;
    parts << QStringLiteral("CPU ") + QString::fromStdString(Format::percent(s.cpu.total));
    if (s.memory.total > 0)
        parts << QStringLiteral("Memory ") + QString::fromStdString(Format::percent(
                                                 double(s.memory.used) / double(s.memory.total)));
    if (auto hottest = s.thermal.hottestC()) {
        const auto t = Format::temperatureParts(*hottest, unit);
        parts << QString::fromStdString(t.value + t.unit);
    }
    parts << QStringLiteral("↓") +
                 QString::fromStdString(Format::rateParts(s.network.downBps, net).joined());
    if (s.battery.present) parts << QStringLiteral("Battery %1%").arg(s.battery.percent);
    return parts.join(QStringLiteral(" · "));
}

}  // namespace

StatusItemController::StatusItemController(platform::TrayItem& tray,
                                           mascot::MascotAnimator& animator,
                                           metrics::MetricsStore& store,
                                           settings::AppSettings& settings,
                                           LabelPlacement placement, QObject* parent)
    : QObject(parent),
      tray_(tray),
      animator_(animator),
      store_(store),
      settings_(settings),
      width_(tickerMeasure()) {
    tray_.setLabelInIcon(placement == LabelPlacement::inIcon);
    connect(&animator_, &mascot::MascotAnimator::menuBarFrameChanged, this,
            &StatusItemController::showFrame);
    connect(&store_, &metrics::MetricsStore::updated, this, &StatusItemController::showReadings);
    menuBarObserver_ =
        settings_.menuBar().observe([this](const std::string&) { settingsChanged(); });
    monitoringObserver_ =
        settings_.monitoring().observe([this](const std::string&) { showReadings(); });
    showFrame();
    tray_.setToolTip(QStringLiteral("Trotlet"), QString());
}

StatusItemController::~StatusItemController() {
    settings_.menuBar().unobserve(menuBarObserver_);
    settings_.monitoring().unobserve(monitoringObserver_);
}

void StatusItemController::setMascotName(const QString& name) {
    mascotName_ = name;
    showReadings();
}

void StatusItemController::setWeatherText(std::function<QString()> text) {
    weatherText_ = std::move(text);
    showReadings();
}

void StatusItemController::settingsChanged() {
    sticky_.reset();
    showFrame();
    showReadings();
}

const std::string& StatusItemController::sampleGuide(settings::MenuBarTextMetric metric) {
    auto found = sampleGuides_.find(metric);
    if (found != sampleGuides_.end()) return found->second;
    const auto measure = tickerMeasure();
    std::string widest;
    double widestWidth = -1;
    for (const std::string& sample : tickerSampleTexts(metric)) {
        if (const double w = measure(sample); w > widestWidth) {
            widest = sample;
            widestWidth = w;
        }
    }
    return sampleGuides_.emplace(metric, widest).first->second;
}

void StatusItemController::showFrame() {
    if (!settings_.menuBar().showMascot()) {
        static const QImage glyph = pawGlyph(44);
        tray_.setFrame(glyph, QStringLiteral("paw"));
        return;
    }
    const QImage frame = animator_.publishedMenuBarFrame();
    if (frame.isNull()) return;
    // Renderer frames are shared copies of cached images, so equal pixels share a cache key.
    tray_.setFrame(frame, QString::number(frame.cacheKey()));
}

void StatusItemController::showReadings() {
    if (!store_.hasSnapshot()) return;
    const metrics::MetricsSnapshot& snapshot = store_.latest();
    const auto& monitoring = settings_.monitoring();
    const auto metric = settings_.menuBar().textMetric();

    const std::string text =
        tickerText(metric, snapshot, monitoring.temperatureUnit(), monitoring.networkUnit());
    QString label;
    QString labelGuide;
    if (!text.empty()) {
        const std::string& guide = sampleGuide(metric);
        const auto reserved = sticky_.update(guide, width_.sampleWidth(metric), text,
                                             width_.reservedWidth(metric, text), secondsNow());
        label = QString::fromStdString(text);
        labelGuide = QString::fromStdString(reserved.guide);
    }
    const QString weather = weatherText_ ? weatherText_() : QString();
    if (!weather.isEmpty()) {
        // The temperature changes by the hour, not by the sample: a guide of three digits and
        // a sign is enough to keep it from pushing the item around.
        const QString separator = QStringLiteral("  ");
        label += (label.isEmpty() ? QString() : separator) + weather;
        labelGuide += (labelGuide.isEmpty() ? QString() : separator) + QStringLiteral("-188") +
                      weather.right(weather.size() - weather.lastIndexOf(QChar(0x00B0)));
    }
    tray_.setLabel(label, labelGuide);

    const std::string mood =
        mascot::MoodLine::text(animator_.state(), snapshot, mascotName_.toStdString(), std::nullopt,
                               settings_.menuBar().speedSource(), monitoring.temperatureUnit());
    tray_.setToolTip(
        QStringLiteral("Trotlet"),
        QString::fromStdString(mood) + QLatin1Char('\n') +
            readingsLine(snapshot, monitoring.temperatureUnit(), monitoring.networkUnit()));
}

}  // namespace trotlet::menubar
