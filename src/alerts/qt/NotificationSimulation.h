#pragma once

namespace trotlet::alerts {

// `--simulate-notifications`: replays the scripted alert timelines and prints them as JSON
// (the preferences, then every step's time, input and decisions). Exit status 0 when every
// step gave the decisions the script expects; 1, naming the first that did not, otherwise.
class NotificationSimulation {
public:
    static int run();
};

}  // namespace trotlet::alerts
