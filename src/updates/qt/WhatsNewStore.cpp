#include "updates/qt/WhatsNewStore.h"

#include <QDateTime>

#include "settings/SettingsKeys.h"

namespace trotlet::updates {

namespace {

std::optional<std::string> text(const settings::DefaultsStore& store, const std::string& key) {
    auto value = store.object(key);
    if (!value || !value->is_string()) return std::nullopt;
    return value->get<std::string>();
}

// Writes only what changed, so a launch that decides nothing new writes nothing.
void put(settings::DefaultsStore& store, const std::string& key,
         const std::optional<std::string>& before, const std::optional<std::string>& after) {
    if (before == after) return;
    store.set(after ? std::optional<settings::SettingValue>(*after) : std::nullopt, key);
}

std::optional<std::string> isoTime(const std::optional<std::int64_t>& seconds) {
    if (!seconds) return std::nullopt;
    return QDateTime::fromSecsSinceEpoch(*seconds, Qt::UTC).toString(Qt::ISODate).toStdString();
}

}  // namespace

WhatsNewState WhatsNewStore::read(const settings::DefaultsStore& store) {
    WhatsNewState s;
    s.lastLaunchedVersion = text(store, settings::keys::lastLaunchedVersion);
    s.pendingVersion = text(store, settings::keys::whatsNewVersion);
    s.pendingAfter = text(store, settings::keys::whatsNewAfter);
    if (auto since = text(store, settings::keys::whatsNewSince)) {
        const QDateTime time = QDateTime::fromString(QString::fromStdString(*since), Qt::ISODate);
        if (time.isValid()) s.pendingSince = time.toSecsSinceEpoch();
    }
    return s;
}

void WhatsNewStore::write(settings::DefaultsStore& store, const WhatsNewState& next) {
    const WhatsNewState before = read(store);
    put(store, settings::keys::lastLaunchedVersion, before.lastLaunchedVersion,
        next.lastLaunchedVersion);
    put(store, settings::keys::whatsNewVersion, before.pendingVersion, next.pendingVersion);
    put(store, settings::keys::whatsNewSince, isoTime(before.pendingSince),
        isoTime(next.pendingSince));
    put(store, settings::keys::whatsNewAfter, before.pendingAfter, next.pendingAfter);
}

WhatsNewStore::WhatsNewStore(settings::DefaultsStore& store, const Version& current,
                             std::int64_t now, const std::vector<ReleaseNote>& bundled,
                             const WhatsNewOverride& override, QObject* parent)
    : QObject(parent), store_(store) {
    const WhatsNewLaunch launch = whatsNewAtLaunch(read(store_), current, now, bundled, override);
    write(store_, launch.state);
    notes_ = launch.notes;
    decision_ = launch.decision;
}

void WhatsNewStore::dismiss() {
    write(store_, whatsNewDismissed(read(store_)));
    if (notes_.empty()) return;
    notes_.clear();
    emit changed();
}

void WhatsNewStore::expireIfOld(std::int64_t now) {
    if (notes_.empty() || !whatsNewExpired(read(store_), now)) return;
    dismiss();
}

}  // namespace trotlet::updates
