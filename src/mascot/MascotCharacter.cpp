#include "mascot/MascotCharacter.h"

#include <algorithm>

namespace trotlet::mascot {

int MascotCharacter::frameCount(MascotMood mood) const {
    int n = runFrames;
    if (mood == MascotMood::sitting) n = sitFrames;
    if (mood == MascotMood::sleeping) n = sleepFrames;
    if (mood == MascotMood::celebrating) n = celebrateFrames;
    return std::max(n, 1);
}

namespace {

MascotCharacter make(std::string id, std::uint32_t color, double lower, double upper,
                     double stride, int runFrames, std::vector<double> bands) {
    MascotCharacter c;
    c.id = std::move(id);
    c.signatureColor = color;
    c.cycleRate = {lower, upper};
    c.strideMeters = stride;
    c.runFrames = runFrames;
    c.loadBands = std::move(bands);
    return c;
}

std::vector<MascotCharacter> buildAll() {
    // Small animals take many short strides, tall ones few long ones; the bands mark where a
    // character's run changes look (a trot into a gallop), so they differ by species.
    std::vector<MascotCharacter> all = {
        make("cat", 0xF2A65A, 0.7, 3.2, 0.5, 8, {0.35, 0.7}),
        make("shiba", 0xE07B39, 0.6, 3.0, 0.6, 8, {0.6}),
        make("bunny", 0xEADDD7, 0.8, 3.6, 0.45, 6, {0.5}),
        make("penguin", 0x3B4A5A, 0.5, 2.2, 0.25, 6, {0.7}),
        make("hamster", 0xD9A066, 1.0, 4.0, 0.15, 6, {0.4, 0.8}),
        make("fox", 0xE8652B, 0.7, 3.4, 0.7, 8, {0.3, 0.65}),
        make("ghost", 0xC9D3F0, 0.4, 2.0, 0.5, 6, {}),
        make("axolotl", 0xF4A7C0, 0.5, 2.4, 0.2, 6, {0.5}),
        make("robot", 0x8FA3B8, 0.6, 2.8, 0.55, 8, {0.5, 0.85}),
        make("trex", 0x5FA55A, 0.5, 2.6, 1.2, 8, {0.6}),
        make("unicorn", 0xC49BF2, 0.7, 3.4, 1.4, 8, {0.4, 0.8}),
        make("maneki", 0xF5F0E6, 0.6, 2.8, 0.5, 8, {0.5}),
        make("goldenCat", 0xE9B949, 0.75, 3.4, 0.55, 8, {0.35, 0.7}),
    };
    // The ghost floats instead of running, so its loop is a short bob; the penguin waddles
    // with a four-count sit.
    all[6].sitFrames = 6;
    all[3].sitFrames = 4;
    all[3].celebrateFrames = 8;
    all[1].colorAspectRatio = 1.15;
    all[9].colorAspectRatio = 1.25;
    all[10].colorAspectRatio = 1.2;
    return all;
}

}  // namespace

const std::vector<MascotCharacter>& allCharacters() {
    static const std::vector<MascotCharacter> all = buildAll();
    return all;
}

const MascotCharacter& characterFor(const std::string& id) {
    const auto& all = allCharacters();
    auto it = std::find_if(all.begin(), all.end(), [&](const auto& c) { return c.id == id; });
    return it != all.end() ? *it : all.front();
}

}  // namespace trotlet::mascot
