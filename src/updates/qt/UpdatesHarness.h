#pragma once

namespace trotlet::updates {

// `--updates-check`: replays update sessions against a release server on 127.0.0.1 (no
// update, newer, same, older, a malformed feed, HTTP errors, a time-out, the fallback feed,
// the override, a full install and each refusal), the What's new decisions on a scripted
// clock and the bundled release notes. Prints {"ok", "checks": [...]} and gives 0, or 1 when
// a check failed. Settings live in memory and files in a temporary folder: the user's are
// never touched.
int runUpdatesHarness();

}  // namespace trotlet::updates
