#include "snapshot/SnapshotRunner.h"

#include <QApplication>
#include <QDir>
#include <QElapsedTimer>
#include <QFont>
#include <QSaveFile>

#include <cstdio>
#include <cstdlib>
#include <ctime>

#include <nlohmann/json.hpp>

#include "snapshot/SceneRig.h"
#include "snapshot/Scenes.h"

namespace trotlet::snapshot {
namespace {

constexpr int sceneScale = 2;

void print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

bool savePng(const QImage& image, const QString& path) {
    QSaveFile file(path);
    if (!file.open(QIODevice::WriteOnly)) return false;
    if (!image.save(&file, "PNG")) return false;
    return file.commit();
}

}  // namespace

void SnapshotRunner::prepareEnvironment() {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    qputenv("QT_SCALE_FACTOR", QByteArray::number(sceneScale));
    qputenv("QT_QPA_PLATFORMTHEME", "");
    qunsetenv("QT_SCREEN_SCALE_FACTORS");
    qunsetenv("QT_AUTO_SCREEN_SCALE_FACTOR");
    qputenv("QT_FONT_DPI", "96");
    setenv("TZ", sceneTimeZone, 1);
    tzset();
}

void SnapshotRunner::prepareApplication() {
    QFont font(QStringLiteral("DejaVu Sans"));
    font.setPointSizeF(10);
    font.setHintingPreference(QFont::PreferNoHinting);
    font.setStyleStrategy(QFont::PreferAntialias);
    QApplication::setFont(font);
}

int SnapshotRunner::listScenes(const cli::LaunchOptions& options) {
    nlohmann::json names = nlohmann::json::array();
    for (const Scene* scene : scenesMatching(options.onlyPrefixes)) names.push_back(scene->name);
    print(names.dump(2) + "\n");
    return 0;
}

int SnapshotRunner::run(const cli::LaunchOptions& options) {
    const QString folder = QString::fromStdString(options.snapshotDirectory);
    if (!QDir().mkpath(folder)) {
        std::fprintf(stderr, "trotlet: cannot create the snapshot directory %s\n",
                     options.snapshotDirectory.c_str());
        return 2;
    }
    const QDir dir(folder);
    nlohmann::ordered_json index;
    index["scenes"] = nlohmann::ordered_json::array();
    int failures = 0;
    QElapsedTimer clock;
    clock.start();
    const auto scenes = scenesMatching(options.onlyPrefixes);
    for (const Scene* scene : scenes) {
        const std::unique_ptr<SceneStage> stage = scene->stage();
        const QImage light = stage->render(panel::ColorScheme::light);
        const QImage dark = stage->render(panel::ColorScheme::dark);
        const QString lightName = QString::fromStdString(scene->name + "-light@2x.png");
        const QString darkName = QString::fromStdString(scene->name + "-dark@2x.png");
        if (light.isNull() || dark.isNull() || !savePng(light, dir.filePath(lightName)) ||
            !savePng(dark, dir.filePath(darkName))) {
            std::fprintf(stderr, "trotlet: scene %s failed to render\n", scene->name.c_str());
            ++failures;
            continue;
        }
        const qreal scale = light.devicePixelRatio();
        nlohmann::ordered_json entry;
        entry["name"] = scene->name;
        entry["light"] = lightName.toStdString();
        entry["dark"] = darkName.toStdString();
        entry["width"] = int(std::lround(light.width() / scale));
        entry["height"] = int(std::lround(light.height() / scale));
        entry["scale"] = scale;
        index["scenes"].push_back(entry);
    }
    QSaveFile file(dir.filePath(QStringLiteral("index.json")));
    const std::string text = index.dump(2) + "\n";
    if (!file.open(QIODevice::WriteOnly) || file.write(text.data(), qint64(text.size())) < 0 ||
        !file.commit()) {
        std::fprintf(stderr, "trotlet: cannot write index.json\n");
        return 1;
    }
    if (std::getenv("TROTLET_SNAPSHOT_TIMING"))
        std::fprintf(stderr, "trotlet: %zu scenes in %lld ms (%.1f ms a scene)\n", scenes.size(),
                     static_cast<long long>(clock.elapsed()),
                     scenes.empty() ? 0.0 : double(clock.elapsed()) / double(scenes.size()));
    return failures == 0 ? 0 : 1;
}

}  // namespace trotlet::snapshot
