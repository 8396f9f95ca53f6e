#pragma once

#include <cstdint>
#include <string>

#include "menubar/DisplayUnits.h"

namespace trotlet::menubar {

// The program-wide number formatting. Every text that shows a number goes through here so that
// a rate reads the same in the menu bar, the panel and a notification. Output never depends on
// the process locale: the decimal separator is always a full stop, even after Qt has called
// setlocale() with the user's region.
class Format {
public:
    // A formatted number split for layouts that style the unit apart from the digits.
    struct Parts {
        std::string value;
        std::string unit;
        double number = 0;  // the magnitude the digits show, in `unit`

        // `value` alone when there is no unit, else value, one space, unit.
        std::string joined() const;
    };

    // x with a fixed number of decimals; negative counts as none.
    static std::string fixed(int decimals, double x);

    // 0.456 -> "46%": rounded to a whole percent, never below zero.
    static std::string percent(double fraction);
    static Parts percentParts(double fraction);

    // Whole degrees in the chosen unit, "°C" or "°F".
    static Parts temperatureParts(double celsius, TemperatureUnit unit);

    // A transfer rate in KB/s, MB/s, GB/s or, with `bits`, Kbps, Mbps, Gbps.
    static Parts rateParts(double bytesPerSecond, bool bits);
    static Parts rateParts(double bytesPerSecond, NetworkUnit unit) {
        return rateParts(bytesPerSecond, unit == NetworkUnit::bits);
    }

    // A byte count: "512 B", "1.46 GB", "23.4 GB", "118 GB".
    static std::string bytes(double count);
    static Parts bytesParts(double count);

    // A span of whole seconds: "45m", "2h 5m", "1d 3h". Truncates; negative counts as 0.
    static std::string duration(double seconds);
};

}  // namespace trotlet::menubar
