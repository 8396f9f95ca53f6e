#pragma once

#include <QObject>
#include <QString>

#include <cstdint>
#include <memory>

#include "panel/SettingsScreen.h"

namespace trotlet::weather {
class WeatherSearch;
}

namespace trotlet::ui {

class PanelModel;

// What Settings and the welcome tour need from the live app beyond the settings: the global
// shortcut as the desktop took it, the login entry's fate, the place search, the app's own facts
// and the welcome gift; and the actions only the app can carry out, sent out as signals. The live
// app (PanelHost) keeps it current; scenes and tests set it by hand.
class SettingsController : public QObject {
    Q_OBJECT
public:
    explicit SettingsController(QObject* parent = nullptr);
    ~SettingsController() override;

    // The facts for the screen: the ones set here, with the Overview's cards, the chosen place,
    // the mascot's name and whether the machine has a battery read from the model.
    panel::SettingsFacts facts(const PanelModel& model) const;

    void setShortcut(panel::ShortcutStatus status, const QString& problem);
    void setAutostartProblem(const QString& problem);
    void setTestNotificationResult(const QString& result);
    void setAbout(const QString& version, const QString& build, const QString& configDir,
                  const QString& dataDir);
    // An update engine in the app: About then offers "Check for updates" and shows its line.
    void setUpdates(bool available, const QString& line);

    // The city field's search; the controller owns it. None: the field searches nothing.
    void setPlaceSearch(std::unique_ptr<weather::WeatherSearch> search);
    weather::WeatherSearch* placeSearch() const { return search_.get(); }

    bool welcomeGiftGranted() const { return giftGranted_; }
    std::int64_t welcomeGiftFish() const { return giftFish_; }
    void setWelcomeGift(bool granted, std::int64_t fish);

    // The stored shortcut in words ("Super+Alt+P"); empty for a key the table cannot name.
    static QString shortcutText(int keyCode, int modifiers);

signals:
    void factsChanged();
    void giftChanged();
    // Actions for the app: a test notification, opening a folder, the tour, updates, quitting.
    void actionRequested(trotlet::panel::RowAction action);
    // The shortcut recorder is listening: the app lets go of the global grab meanwhile, so the
    // combination pressed reaches the recorder.
    void shortcutRecording(bool recording);
    void welcomeGiftRequested();
    // The tour was finished or skipped; the panel goes back to its tabs.
    void onboardingClosed();

private:
    panel::SettingsFacts facts_;
    std::unique_ptr<weather::WeatherSearch> search_;
    bool giftGranted_ = false;
    std::int64_t giftFish_ = 100;
};

}  // namespace trotlet::ui
