#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include <QObject>

#include "settings/DefaultsStore.h"
#include "updates/WhatsNew.h"

namespace trotlet::updates {

// What's new for this session: decided once at launch from the "release.*" keys, offered in
// the panel until the user dismisses it or it is 14 days old.
class WhatsNewStore : public QObject {
    Q_OBJECT
public:
    WhatsNewStore(settings::DefaultsStore& store, const Version& current, std::int64_t now,
                  const std::vector<ReleaseNote>& bundled, const WhatsNewOverride& override,
                  QObject* parent = nullptr);

    // The notes to show now, newest first; empty shows nothing.
    const std::vector<ReleaseNote>& notes() const { return notes_; }
    WhatsNewDecision decision() const { return decision_; }

    void dismiss();
    // Drops the notes once they are older than their lifetime (the panel asks when it opens).
    void expireIfOld(std::int64_t now);

    static WhatsNewState read(const settings::DefaultsStore& store);
    static void write(settings::DefaultsStore& store, const WhatsNewState& state);

signals:
    void changed();

private:
    settings::DefaultsStore& store_;
    std::vector<ReleaseNote> notes_;
    WhatsNewDecision decision_;
};

}  // namespace trotlet::updates
