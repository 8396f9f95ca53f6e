#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

#include <cstdlib>

namespace {

const QString kGolden = QStringLiteral(TROTLET_SOURCE_DIR "/src/snapshot/tests/golden");

// The scenes kept as golden images, one name a line; scripts/refresh-golden.sh writes them
// after a deliberate change of look.
QStringList goldenScenes() {
    QFile list(kGolden + QStringLiteral("/scenes.txt"));
    if (!list.open(QIODevice::ReadOnly)) return {};
    return QString::fromUtf8(list.readAll()).split(QLatin1Char('\n'), Qt::SkipEmptyParts);
}

struct Outcome {
    int status = -1;
    QString err;
    QByteArray out;
};

Outcome trotlet(const QStringList& args) {
    QProcess process;
    process.start(QStringLiteral(TROTLET_BINARY), args);
    process.waitForFinished(120000);
    return {process.exitStatus() == QProcess::NormalExit ? process.exitCode() : -1,
            QString::fromLocal8Bit(process.readAllStandardError()),
            process.readAllStandardOutput()};
}

QByteArray bytes(const QString& path) {
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

// Pixels may differ by a little anti-aliasing; a changed look moves far more than 0.5 %.
double differingShare(const QImage& a, const QImage& b) {
    if (a.size() != b.size()) return 1;
    const QImage x = a.convertToFormat(QImage::Format_ARGB32);
    const QImage y = b.convertToFormat(QImage::Format_ARGB32);
    qint64 differing = 0;
    for (int row = 0; row < x.height(); ++row) {
        const auto* p = reinterpret_cast<const QRgb*>(x.constScanLine(row));
        const auto* q = reinterpret_cast<const QRgb*>(y.constScanLine(row));
        for (int col = 0; col < x.width(); ++col) {
            const int d = std::max({std::abs(qRed(p[col]) - qRed(q[col])),
                                    std::abs(qGreen(p[col]) - qGreen(q[col])),
                                    std::abs(qBlue(p[col]) - qBlue(q[col])),
                                    std::abs(qAlpha(p[col]) - qAlpha(q[col]))});
            if (d > 24) ++differing;
        }
    }
    return double(differing) / double(x.width() * x.height());
}

TEST(SnapshotHarness, ScenesMatchTheGoldenImagesAndRenderTheSameTwice) {
    QTemporaryDir first, second;
    const QStringList golden = goldenScenes();
    ASSERT_FALSE(golden.isEmpty());
    const QString only = golden.join(QLatin1Char(','));
    const Outcome a =
        trotlet({QStringLiteral("--snapshot"), first.path(), QStringLiteral("--only"), only});
    const Outcome b =
        trotlet({QStringLiteral("--snapshot"), second.path(), QStringLiteral("--only"), only});
    ASSERT_EQ(a.status, 0) << a.err.toStdString();
    ASSERT_EQ(b.status, 0) << b.err.toStdString();

    const QJsonObject index =
        QJsonDocument::fromJson(bytes(first.filePath(QStringLiteral("index.json")))).object();
    const QJsonArray scenes = index.value(QStringLiteral("scenes")).toArray();
    ASSERT_EQ(scenes.size(), golden.size());
    for (const auto& value : scenes) {
        const QJsonObject scene = value.toObject();
        EXPECT_EQ(scene.value(QStringLiteral("scale")).toDouble(), 2.0);
        for (const auto* theme : {"light", "dark"}) {
            const QString file = scene.value(QLatin1String(theme)).toString();
            SCOPED_TRACE(file.toStdString());
            EXPECT_EQ(bytes(first.filePath(file)), bytes(second.filePath(file)))
                << "not deterministic";
            const QImage image(first.filePath(file));
            ASSERT_FALSE(image.isNull());
            EXPECT_EQ(image.width(), scene.value(QStringLiteral("width")).toInt() * 2);
            const QImage expected(QDir(kGolden).filePath(file));
            ASSERT_FALSE(expected.isNull()) << "no golden image; run scripts/refresh-golden.sh";
            EXPECT_LT(differingShare(image, expected), 0.005)
                << "the look changed; if on purpose, run scripts/refresh-golden.sh";
        }
    }
}

TEST(SnapshotHarness, ListsScenesAndRefusesWhatItCannotDo) {
    const Outcome all = trotlet({QStringLiteral("--list-scenes")});
    ASSERT_EQ(all.status, 0);
    const QJsonArray names = QJsonDocument::fromJson(all.out).array();
    // Nine fixtures, every size, a reopened panel, three notices, eight moods, thirteen menu-bar
    // strips, thirteen mascot contact sheets, four of the Processes tab and the hero; the sky for
    // nine conditions and none at four phases, eight moods over a clear day, the Paw Report twice;
    // the Shop's fourteen (six demo states, six pages and states, the welcome, the Golden Fish);
    // Settings' index, seven sections, the city search and the recorder; the tour's five steps
    // and its open gift; the eight other details, the desktop's heat and battery, a share that
    // stopped answering and a day of CPU, and edit mode.
    EXPECT_EQ(names.size(),
              9 + 1 + 1 + 3 + 8 + 13 + 13 + 4 + 1 + 10 * 4 + 8 + 2 + 14 + 10 + 6 + 8 + 4 + 1);
    const Outcome some = trotlet({QStringLiteral("--list-scenes"), QStringLiteral("--only"),
                                  QStringLiteral("hero,panel-header-")});
    EXPECT_EQ(QJsonDocument::fromJson(some.out).array().size(), 10) << "with the Golden Fish";

    EXPECT_EQ(trotlet({QStringLiteral("--snapshot")}).status, 2);
    QTemporaryDir dir;
    QFile blocker(dir.filePath(QStringLiteral("file")));
    ASSERT_TRUE(blocker.open(QIODevice::WriteOnly));
    const Outcome blocked =
        trotlet({QStringLiteral("--snapshot"), dir.filePath(QStringLiteral("file/out")),
                 QStringLiteral("--only"), QStringLiteral("hero")});
    EXPECT_EQ(blocked.status, 2) << blocked.err.toStdString();
}

}  // namespace
