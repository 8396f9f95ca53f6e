#include "weather/qt/WeatherFormat.h"

#include <map>
#include <memory>
#include <mutex>

#include <QDateTime>
#include <QTimeZone>

namespace trotlet::weather {

namespace {

struct Formatter {
    QTimeZone zone;
    QLocale locale;
    QString pattern;
};

bool twelveHour(const QLocale& locale) {
    const QString f = locale.timeFormat(QLocale::ShortFormat);
    return f.contains(QLatin1Char('a'), Qt::CaseInsensitive);
}

QString patternFor(const std::string& templ, const QLocale& locale) {
    if (templ == "jmm") return twelveHour(locale) ? QStringLiteral("h:mm AP") : QStringLiteral("HH:mm");
    if (templ == "j") return twelveHour(locale) ? QStringLiteral("h AP") : QStringLiteral("HH");
    if (templ == "EEE") return QStringLiteral("ddd");
    if (templ == "EEEE") return QStringLiteral("dddd");
    if (templ == "MMMd") {
        // Day first unless the locale writes its short dates month first.
        const QString s = locale.dateFormat(QLocale::ShortFormat);
        const bool monthFirst = s.indexOf(QLatin1Char('M')) < s.indexOf(QLatin1Char('d'));
        return monthFirst ? QStringLiteral("MMM d") : QStringLiteral("d MMM");
    }
    return QString::fromStdString(templ);
}

std::mutex& cacheMutex() {
    static std::mutex m;
    return m;
}

std::map<std::string, std::shared_ptr<const Formatter>>& cache() {
    static std::map<std::string, std::shared_ptr<const Formatter>> c;
    return c;
}

std::shared_ptr<const Formatter> formatterFor(const std::string& templ, const std::string& zone, int offset,
                                              const QLocale& locale) {
    const std::string key = templ + "|" + zone + "|" + std::to_string(offset) + "|" + locale.name().toStdString();
    std::lock_guard<std::mutex> lock(cacheMutex());
    auto& c = cache();
    if (auto it = c.find(key); it != c.end()) return it->second;
    auto f = std::make_shared<Formatter>();
    f->zone = QTimeZone(QByteArray::fromStdString(zone));
    if (zone.empty() || zone == "auto" || !f->zone.isValid()) f->zone = QTimeZone(offset);
    f->locale = locale;
    f->pattern = patternFor(templ, locale);
    c.emplace(key, f);
    return f;
}

}  // namespace

std::string WeatherFormat::string(UnixTime time, const std::string& templ, const std::string& zone,
                                  int utcOffsetSeconds, const QLocale& locale) {
    auto f = formatterFor(templ, zone, utcOffsetSeconds, locale);
    const QDateTime at = QDateTime::fromSecsSinceEpoch(time, f->zone);
    return f->locale.toString(at, f->pattern).toStdString();
}

size_t WeatherFormat::cachedFormatters() {
    std::lock_guard<std::mutex> lock(cacheMutex());
    return cache().size();
}

}  // namespace trotlet::weather
