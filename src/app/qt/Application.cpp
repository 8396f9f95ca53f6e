#include "app/qt/Application.h"

#include <QCoreApplication>

namespace trotlet::app {

int runApplication(const LaunchOptions&, int argc, char** argv) {
    QCoreApplication app(argc, argv);
    return 0;
}

}  // namespace trotlet::app
