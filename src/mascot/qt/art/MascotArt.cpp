#include "mascot/qt/art/MascotArt.h"

#include <array>
#include <utility>

#include "mascot/qt/art/Mascots.h"

namespace trotlet::mascot::art {

QImage drawMascotArt(const MascotArt& art, const FrameRequest& request) {
    const qreal dpr = request.devicePixelRatio > 0 ? request.devicePixelRatio : 1;
    const int side = qMax(1, qRound(request.pixelSize * dpr));
    QImage image(side, side, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    image.setDevicePixelRatio(dpr);
    QPainter p(&image);
    p.setRenderHint(QPainter::Antialiasing);
    // The grid fills the frame but for one clear device pixel all round, so an edge, a foot's
    // round cap or an accessory at the grid's border is never cut off. The painter already maps
    // logical to device pixels through the image's pixel ratio.
    const qreal inner = qMax(1, side - 2);
    p.translate(1 / dpr, 1 / dpr);
    p.scale(inner / dpr / gridSize, inner / dpr / gridSize);
    Rig rig(p, request, art.palette());
    Anchors anchors;
    switch (request.mood) {
        case MascotMood::sitting:
            anchors = art.sit(rig);
            break;
        case MascotMood::sleeping:
            anchors = art.sleep(rig);
            break;
        case MascotMood::celebrating:
            anchors = art.celebrate(rig);
            break;
        default:
            anchors = art.run(rig);
            break;
    }
    art.finish(rig, anchors);
    rig.moodEffects(anchors);
    rig.accessoriesAt(anchors);
    p.end();
    return image;
}

namespace {

using Entry = std::pair<std::string_view, const MascotArt& (*)()>;

// Every mascot of the catalog and its drawing, in catalog order.
constexpr std::array<Entry, 13> registry = {{
    {"cat", catArt},
    {"shiba", shibaArt},
    {"bunny", bunnyArt},
    {"penguin", penguinArt},
    {"hamster", hamsterArt},
    {"fox", foxArt},
    {"ghost", ghostArt},
    {"axolotl", axolotlArt},
    {"robot", robotArt},
    {"trex", trexArt},
    {"unicorn", unicornArt},
    {"maneki", manekiArt},
    {"goldenCat", goldenCatArt},
}};

}  // namespace

const MascotArt* findMascotArt(std::string_view id) {
    for (const auto& [key, art] : registry)
        if (key == id) return &art();
    return nullptr;
}

const MascotArt& mascotArt(std::string_view id) {
    const MascotArt* art = findMascotArt(id);
    return art ? *art : catArt();
}

}  // namespace trotlet::mascot::art
