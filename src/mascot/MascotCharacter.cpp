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

struct Frames {
    int run, sit, sleep, celebrate;
};

MascotCharacter make(std::string id, std::uint32_t color, double lower, double upper, double stride,
                     Frames frames, std::vector<double> bands, double aspect = 1.0) {
    MascotCharacter c;
    c.id = std::move(id);
    c.signatureColor = color;
    c.cycleRate = {lower, upper};
    c.strideMeters = stride;
    c.runFrames = frames.run;
    c.sitFrames = frames.sit;
    c.sleepFrames = frames.sleep;
    c.celebrateFrames = frames.celebrate;
    c.loadBands = std::move(bands);
    c.colorAspectRatio = aspect;
    return c;
}

std::vector<MascotCharacter> buildAll() {
    // Small animals take many short strides, tall ones few long ones; the bands mark where a
    // character's run changes look, so they sit where its gait would really change. A loop of
    // n frames at 24 px @2x costs n x 9 KB, so eight frames keep a band under 100 KB.
    return {
        // A house cat: trot, gallop from 0.35, flat-out bounds from 0.7.
        make("cat", 0xF2A65A, 0.7, 3.2, 0.5, {8, 4, 4, 6}, {0.35, 0.7}),
        // A compact dog a little longer in the leg than the cat; the trot breaks into a gallop
        // only past 0.6.
        make("shiba", 0xE07B39, 0.6, 3.0, 0.6, {8, 4, 4, 6}, {0.6}, 1.15),
        // One hop a cycle covers more ground than a step and takes longer: fewer cycles, a
        // longer stride; six frames hold crouch, lift, float, land; long leaps from 0.5.
        make("bunny", 0xEADDD7, 0.7, 2.8, 0.6, {6, 4, 4, 6}, {0.5}),
        // Short legs, slow rocking steps, tiny strides; it gives up walking at 0.7 and slides.
        make("penguin", 0x3B4A5A, 0.5, 2.2, 0.25, {6, 4, 4, 8}, {0.7}),
        // Tiny legs at the highest rate and the shortest stride; a dash from 0.4, the wheel
        // from 0.8.
        make("hamster", 0xD9A066, 1.0, 4.0, 0.15, {6, 4, 4, 6}, {0.4, 0.8}),
        // Long legs, a long stride: the trot opens into a gallop early (0.3), bounds at 0.65.
        make("fox", 0xE8652B, 0.7, 3.4, 0.7, {8, 4, 4, 6}, {0.3, 0.65}),
        // A slow drift, one bob a cycle; it streams from 0.55. Six frames bob smoothly and a
        // six-frame hover keeps the hem rippling when it sits.
        make("ghost", 0xC9D3F0, 0.4, 2.0, 0.5, {6, 6, 4, 6}, {0.55}),
        // A slow walker with a short stride that swims from 0.5; eight frames keep the
        // tail's wave smooth.
        make("axolotl", 0xF4A7C0, 0.5, 2.4, 0.2, {8, 4, 4, 6}, {0.5}),
        // Six hard servo poses a stride read as mechanical; it rolls on its wheel from 0.5 and
        // fires its jet from 0.85.
        make("robot", 0x8FA3B8, 0.6, 2.8, 0.55, {6, 4, 4, 6}, {0.5, 0.85}),
        // Big, slow, heavy strides of over a metre; it breaks into a run at 0.6.
        make("trex", 0x5FA55A, 0.5, 2.6, 1.2, {8, 4, 4, 6}, {0.6}, 1.25),
        // A horse's long stride at a lively rate: trot, canter from 0.4, the rainbow gallop
        // from 0.8.
        make("unicorn", 0xC49BF2, 0.7, 3.4, 1.4, {8, 4, 4, 6}, {0.4, 0.8}, 1.2),
        // A figurine's short shuffle that skips from 0.5; the beckon wants six frames seated.
        make("maneki", 0xF5F0E6, 0.6, 2.8, 0.5, {8, 6, 4, 6}, {0.5}),
        // The cat in gold, a touch livelier, so the legend outpaces the starter.
        make("goldenCat", 0xE9B949, 0.75, 3.4, 0.55, {8, 4, 4, 6}, {0.35, 0.7}),
    };
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
