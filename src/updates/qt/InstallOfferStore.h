#pragma once

#include <functional>
#include <string>

#include <QObject>

#include "platform/linux/InstallPlaces.h"
#include "settings/DefaultsStore.h"
#include "updates/InstallDecision.h"
#include "updates/UpdatePolicy.h"
#include "updates/qt/UserInstall.h"

namespace trotlet::updates {

// "Install for this user" in the panel: offered once for a copy that runs from a download,
// a temporary folder or a removable medium. Installing copies it into ~/.local/opt/trotlet,
// writes the launcher and the icon, and relaunches from there; declining is remembered for
// that path.
class InstallOfferStore : public QObject {
    Q_OBJECT
public:
    InstallOfferStore(settings::DefaultsStore& store, std::string runningProgram,
                      platform::InstallPlaces places,
                      std::function<bool(const std::string&)> relaunch, QObject* parent = nullptr);

    const InstallDecision& decision() const { return decision_; }
    bool isOffered() const { return offered_; }
    // The last install's failure, for people; empty when none.
    const std::string& problem() const { return problem_; }

    // Installs and relaunches; false (with `problem`) when the install failed.
    bool install();
    void decline();

signals:
    void changed();
    void relaunched();

private:
    settings::DefaultsStore& store_;
    std::string program_;
    platform::InstallPlaces places_;
    std::function<bool(const std::string&)> relaunch_;
    InstallDecision decision_;
    bool offered_ = false;
    std::string problem_;
};

// The channel a running copy updates through, from its install decision.
InstallChannel channelFor(const InstallDecision& decision);

}  // namespace trotlet::updates
