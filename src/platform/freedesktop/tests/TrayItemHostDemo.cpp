// Puts a real tray item on the user's session bus for a while, for the host check and the cost
// measurement in scripts/. Disabled in the suite: it needs a desktop and takes seconds.
//
//   freedesktop_tests --gtest_also_run_disabled_tests --gtest_filter='*HostDemo*'
//
// TROTLET_TRAY_DEMO_SECONDS (default 20), TROTLET_TRAY_DEMO_FPS (default 10),
// TROTLET_TRAY_LABEL_IN_ICON=1 to draw the label into the icon.
#include "platform/freedesktop/StatusNotifierItem.h"
#include "platform/freedesktop/TrayItem.h"

#include "FreedesktopTestSupport.h"

#include <QAction>
#include <QApplication>
#include <QElapsedTimer>
#include <QMenu>
#include <QPainter>
#include <QTimer>

#include <gtest/gtest.h>

#include <cmath>
#include <cstdio>

namespace trotlet::platform {
namespace {

// A plain stand-in for the mascot: a body and four legs that swing with the stride phase.
QImage demoFrame(int index, int frames, int size) {
    QImage image(size, size, QImage::Format_ARGB32);
    image.fill(Qt::transparent);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    p.scale(size / 22.0, size / 22.0);
    const QColor ink(255, 179, 71);
    p.setPen(QPen(ink, 1.6, Qt::SolidLine, Qt::RoundCap));
    p.setBrush(ink);
    p.drawEllipse(QRectF(4, 8, 11, 6));
    p.drawEllipse(QRectF(13, 5, 6, 5.5));
    const double phase = 2 * M_PI * index / frames;
    for (int leg = 0; leg < 4; ++leg) {
        const double hipX = leg < 2 ? 6.5 : 13.0;
        const double swing = std::sin(phase + (leg % 2 ? M_PI : 0)) * 3.0;
        p.drawLine(QPointF(hipX, 13), QPointF(hipX + swing, 19));
    }
    p.drawLine(QPointF(4.5, 10), QPointF(1.5, 6 + std::sin(phase)));
    return image;
}

TEST(TrayItemHostDemo, DISABLED_ShowsAnAnimatedItemOnTheSessionBus) {
    testing::ensureApplication();
    const int seconds = qEnvironmentVariableIntValue("TROTLET_TRAY_DEMO_SECONDS") > 0
                            ? qEnvironmentVariableIntValue("TROTLET_TRAY_DEMO_SECONDS")
                            : 20;
    const int fps = qEnvironmentVariableIntValue("TROTLET_TRAY_DEMO_FPS") > 0
                        ? qEnvironmentVariableIntValue("TROTLET_TRAY_DEMO_FPS")
                        : 10;
    auto item = TrayItem::create(QDBusConnection::sessionBus());
    ASSERT_TRUE(item);
    QMenu menu;
    menu.addAction(QStringLiteral("Open Trotlet"));
    menu.addAction(QString::fromUtf8("Settings\u2026"));
    menu.addSeparator();
    QAction* quit = menu.addAction(QStringLiteral("Quit"));
    QObject::connect(quit, &QAction::triggered, qApp, &QCoreApplication::quit);
    item->setMenu(&menu);
    item->setLabelInIcon(qEnvironmentVariable("TROTLET_TRAY_LABEL_IN_ICON") == QLatin1String("1"));
    item->setToolTip(QStringLiteral("Trotlet"), QStringLiteral("Trotting \u2014 CPU 37%"));
    int clicks = 0;
    QObject::connect(item.get(), &TrayItem::activated, [&](QPoint point) {
        ++clicks;
        std::fprintf(stderr, "activated at %d,%d\n", point.x(), point.y());
    });

    constexpr int kFrames = 8;
    QList<QImage> frames;
    for (int i = 0; i < kFrames; ++i) frames.append(demoFrame(i, kFrames, 22));
    int tick = 0;
    QTimer timer;
    QObject::connect(&timer, &QTimer::timeout, [&] {
        const int i = tick % kFrames;
        item->setFrame(frames[i], QStringLiteral("demo-%1").arg(i));
        // A new reading about once a second, as the sampling tick would bring.
        if (tick % fps == 0) {
            item->setLabel(QStringLiteral("%1%").arg(30 + (tick / fps) % 9 * 7), QStringLiteral("100%"));
        }
        ++tick;
    });
    timer.start(1000 / fps);
    QTimer::singleShot(seconds * 1000, qApp, &QCoreApplication::quit);
    QApplication::exec();

    std::printf("{\"kind\":\"%s\",\"ticks\":%d,\"clicks\":%d",
                item->kind() == TrayItem::Kind::statusNotifier ? "statusNotifier" : "xembed", tick, clicks);
    if (auto* sni = qobject_cast<StatusNotifierItem*>(item.get())) {
        std::printf(",\"registered\":%s,\"iconsSent\":%llu,\"encoded\":%llu,\"reused\":%llu,\"cacheBytes\":%lld",
                    sni->isRegisteredWithWatcher() ? "true" : "false", (unsigned long long)sni->iconsSent(),
                    (unsigned long long)sni->frameCache().misses(), (unsigned long long)sni->frameCache().hits(),
                    (long long)sni->frameCache().bytes());
    }
    std::printf("}\n");
}

}  // namespace
}  // namespace trotlet::platform
