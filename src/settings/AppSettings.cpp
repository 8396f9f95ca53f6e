#include "settings/AppSettings.h"

namespace trotlet::settings {

AppSettings::AppSettings(DefaultsStore store, bool usesUSMeasurement)
    : store_(std::move(store)),
      general_(store_),
      monitoring_(store_, usesUSMeasurement),
      menuBar_(store_),
      mascot_(store_),
      notifications_(store_),
      weather_(store_),
      layout_(store_) {}

}  // namespace trotlet::settings
