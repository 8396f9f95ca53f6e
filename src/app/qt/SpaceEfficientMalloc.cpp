#include "app/qt/SpaceEfficientMalloc.h"

namespace trotlet::app {

void SpaceEfficientMalloc::adopt(char**) {}

}  // namespace trotlet::app
