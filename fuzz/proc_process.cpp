// /proc/<pid>/stat (and /proc/self/stat, statm), the command line that extends a cut-short name,
// and /etc/passwd for the owner's name. The command line follows the first NUL byte.

#include "platform/linux/ProcessReader.h"
#include "platform/linux/UserNames.h"

#include "FuzzSupport.h"

using namespace trotlet;
using namespace trotlet::platform;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const auto text = fuzz::bytes(data, size);
    const auto [stat, cmdline] = fuzz::twoReadings(text);
    ProcStat parsed;
    if (parseProcStat(stat, parsed)) {
        FUZZ_CHECK(parsed.comm.size() < stat.size());
        const std::string name = displayName(parsed.comm, cmdline);
        FUZZ_CHECK(name.size() >= parsed.comm.size() || name == std::string(parsed.comm));
    }
    for (const auto& [uid, user] : UserNames::parse(text)) FUZZ_CHECK(!user.empty());
    return 0;
}
