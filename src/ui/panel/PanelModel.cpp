#include "ui/panel/PanelModel.h"

#include <QDateTime>

#include "layout/LayoutStore.h"
#include "mascot/MoodLine.h"
#include "settings/AppSettings.h"

namespace trotlet::ui {

PanelModel::PanelModel(settings::AppSettings& settings, layout::LayoutStore& layout,
                       const metrics::MetricHistory& history, QObject* parent)
    : QObject(parent), settings_(settings), layout_(layout), history_(history) {
    // A layout changed anywhere (Settings' card switches, a reset) rebuilds the Overview.
    layoutObserver_ = layout_.observe([this] { emit layoutChanged(); });
    // The cards and the mood line read units and switches from the settings: a change there
    // redraws them as a new sample would, without waiting for one.
    auto redraw = [this](const std::string&) {
        if (sample_) emit sampleChanged();
    };
    monitoringObserver_ = settings_.monitoring().observe(redraw);
    mascotObserver_ = settings_.mascot().observe(redraw);
}

PanelModel::~PanelModel() {
    layout_.unobserve(layoutObserver_);
    settings_.monitoring().unobserve(monitoringObserver_);
    settings_.mascot().unobserve(mascotObserver_);
}

void PanelModel::setSample(const metrics::MetricsSnapshot& sample, metrics::MetricKinds kinds) {
    sample_ = sample;
    kinds_ = kinds;
    emit sampleChanged();
}

void PanelModel::setMascot(const std::string& id, const mascot::MascotState& visual, double fps) {
    const bool same = id == mascotId_ && visual.mood == visual_.mood &&
                      visual.loadBand == visual_.loadBand &&
                      visual.accessories == visual_.accessories && fps == fps_;
    mascotId_ = id;
    visual_ = visual;
    fps_ = fps;
    if (!same) emit mascotChanged();
}

void PanelModel::setNotice(std::optional<updates::PanelNotice> notice) {
    if (notice == notice_) return;
    notice_ = std::move(notice);
    emit noticeChanged();
}

void PanelModel::setReduceMotion(bool reduce) {
    if (reduce == reduceMotion_) return;
    reduceMotion_ = reduce;
    emit reduceMotionChanged();
}

void PanelModel::setFishBalance(std::int64_t balance) {
    if (balance == fish_) return;
    fish_ = balance;
    emit walletChanged();
}

void PanelModel::setWeather(std::optional<panel::WeatherSummary> weather,
                            std::optional<weather::WeatherReport> report) {
    weather_ = std::move(weather);
    report_ = std::move(report);
    emit weatherChanged();
}

void PanelModel::setWeatherDetail(panel::WeatherDetailInputs detail) {
    weatherDetail_ = std::move(detail);
    emit weatherChanged();
}

void PanelModel::setPublicAddress(panel::PublicAddressState state) {
    if (state == publicAddress_) return;
    publicAddress_ = std::move(state);
    emit publicAddressChanged();
}

panel::DetailInputs PanelModel::detailInputs() const {
    panel::DetailInputs in;
    in.card = cardInputs();
    in.now = std::chrono::duration_cast<std::chrono::seconds>(now().time_since_epoch()).count();
    in.weather = weatherDetail_;
    in.publicAddress = publicAddress_;
    return in;
}

panel::ChartUnits PanelModel::chartUnits() const {
    return {settings_.monitoring().temperatureUnit(), settings_.monitoring().networkUnit(),
            localOffsetSeconds()};
}

void PanelModel::setPaw(std::optional<panel::PawSummary> paw) {
    if (paw == paw_) return;
    paw_ = std::move(paw);
    emit pawChanged();
}

int PanelModel::localOffsetSeconds() const {
    const auto seconds =
        std::chrono::duration_cast<std::chrono::seconds>(now().time_since_epoch()).count();
    return QDateTime::fromSecsSinceEpoch(seconds).offsetFromUtc();
}

metrics::Timestamp PanelModel::now() const {
    return clock_ ? clock_() : std::chrono::system_clock::now();
}

panel::CardInputs PanelModel::cardInputs() const {
    panel::CardInputs in;
    in.sample = sample();
    in.kinds = kinds_;
    in.perCore = settings_.monitoring().showPerCoreCPU();
    in.temperatureUnit = settings_.monitoring().temperatureUnit();
    in.networkUnit = settings_.monitoring().networkUnit();
    in.paw = paw_;
    in.weather = weather_;
    return in;
}

std::string PanelModel::moodLine() const {
    if (!sample_ || !settings_.mascot().showMoodLine()) return {};
    return mascot::MoodLine::text(visual_, *sample_, mascotName_, now(),
                                  settings_.menuBar().speedSource(),
                                  settings_.monitoring().temperatureUnit());
}

}  // namespace trotlet::ui
