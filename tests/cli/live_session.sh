# Sourced by the live-app tests that run under xvfb-run: a throwaway home and runtime folder,
# the processes to stop on exit, failure counting, and waiting for a line in a log.
failures=0
work=$(mktemp -d)
pids=()
cleanup() {
    for pid in "${pids[@]}"; do kill "$pid" 2>/dev/null; done
    rm -rf "$work"
}
trap cleanup EXIT
export HOME=$work/home XDG_CONFIG_HOME=$work/config XDG_DATA_HOME=$work/data XDG_RUNTIME_DIR=$work/run
mkdir -p "$HOME" "$XDG_RUNTIME_DIR" && chmod 700 "$XDG_RUNTIME_DIR"

fail() { echo "FAIL: $*"; failures=$((failures + 1)); }

# A home whose user has been through the welcome tour, so a start does not open the panel on it.
tour_done() {
    mkdir -p "$XDG_CONFIG_HOME/trotlet"
    printf '{"general.hasCompletedOnboarding": true}\n' >"$XDG_CONFIG_HOME/trotlet/settings.json"
}

# wait_for <file> <fixed text> [seconds]
wait_for() {
    local deadline=$((SECONDS + ${3:-20}))
    while ((SECONDS < deadline)); do
        grep -qF -- "$2" "$1" 2>/dev/null && return 0
        sleep 0.1
    done
    return 1
}
