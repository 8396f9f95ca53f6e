#pragma once

#include <memory>
#include <string>

// A FUSE file system, served by a thread of this process, whose statfs does not answer until
// `release()`: a network share whose server has gone away, as statvfs meets it. Later it can
// fail instead, as a share whose connection dropped does. It serves an empty root directory and
// nothing else. The destructor releases the call, unmounts lazily and
// stops the thread, so no process is left waiting on it.
class HungFuseShare {
public:
    // Mounts at `directory` (which must exist); `error` says why when it cannot (no /dev/fuse,
    // no right to mount). statfs answers 1000 blocks of 4096 bytes, 250 free, once released.
    static std::unique_ptr<HungFuseShare> mount(const std::string& directory, std::string& error);
    ~HungFuseShare();
    HungFuseShare(const HungFuseShare&) = delete;
    HungFuseShare& operator=(const HungFuseShare&) = delete;

    void release();
    // From now on statfs answers at once with `error` (an errno value); 0 gives the space again.
    void failWith(int error);

    struct State;

private:
    HungFuseShare() = default;
    std::shared_ptr<State> state_;
};
