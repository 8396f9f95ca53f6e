#include "mascot/MascotDumpBlock.h"

#include <chrono>

#include "mascot/MascotStateMachine.h"
#include "settings/RawEnum.h"

namespace trotlet::mascot {

MascotState settledMascotState(const metrics::MetricsSnapshot& snapshot,
                               const MascotCharacter& character, const MascotBehavior& behavior,
                               const LocalCalendar& calendar) {
    MascotStateMachine machine;
    MascotState state;
    for (int second = -dumpSettleSeconds; second <= 0; ++second) {
        const auto now = snapshot.timestamp + std::chrono::seconds(second);
        state = machine.update(snapshot, behavior, character, now, 1.0, calendar);
    }
    return state;
}

nlohmann::ordered_json mascotDumpBlock(const metrics::MetricsSnapshot& snapshot,
                                       const std::string& characterId,
                                       const MascotBehavior& behavior,
                                       const FrameEnvironment& frameSettings,
                                       const LocalCalendar& calendar) {
    const MascotCharacter& character = characterFor(characterId);
    const MascotState state = settledMascotState(snapshot, character, behavior, calendar);
    const FrameEnvironment env = FrameEnvironment::fromSnapshot(snapshot, frameSettings);

    nlohmann::ordered_json block;
    block["id"] = character.id;
    block["state"] = settings::rawName(state.mood, MascotMoodNames);
    block["gait"] = settings::rawName(state.gait, GaitNames);
    block["load"] = state.load;
    block["cyclesPerSecond"] = state.cyclesPerSecond;
    block["fps"] = menuBarFPS(state, character, env);
    block["frames"] = character.frameCount(state.mood);
    block["accessories"] = state.accessories.dumpNames();
    return block;
}

}  // namespace trotlet::mascot
