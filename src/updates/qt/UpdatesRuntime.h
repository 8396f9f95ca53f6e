#pragma once

#include <functional>
#include <memory>
#include <string>

#include <QObject>

#include "cli/LaunchOptions.h"
#include "settings/DefaultsStore.h"
#include "updates/UpdateStatus.h"

namespace trotlet::updates {

class InstallOfferStore;
class UpdateStore;
class WhatsNewStore;

// The live app's updates: at start it lets go of the copy an update replaced, decides What's
// new, whether to offer "Install for this user", and how this copy is updated; then it runs
// the daily check and the launch-time `--check-updates` / `--update-now`. The panel reads the
// three stores.
class UpdatesRuntime : public QObject {
    Q_OBJECT
public:
    // `log` hears one line per decision (the app's debug log).
    UpdatesRuntime(const cli::LaunchOptions& options, settings::DefaultsStore& store,
                   std::function<void(const std::string&)> log, QObject* parent = nullptr);
    ~UpdatesRuntime() override;

    UpdateStore& updates() { return *updates_; }
    WhatsNewStore& whatsNew() { return *whatsNew_; }
    InstallOfferStore& installOffer() { return *installOffer_; }

signals:
    // A new copy has started (after an update or an install): the app should quit.
    void relaunched();

private:
    std::unique_ptr<WhatsNewStore> whatsNew_;
    std::unique_ptr<InstallOfferStore> installOffer_;
    std::unique_ptr<UpdateStore> updates_;
    UpdatePhase lastPrinted_ = UpdatePhase::idle;
};

}  // namespace trotlet::updates
