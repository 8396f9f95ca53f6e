#include "HungFuseShare.h"

#define FUSE_USE_VERSION 31
#include <fuse.h>
#include <sys/statvfs.h>

#include <cerrno>
#include <condition_variable>
#include <cstring>
#include <mutex>
#include <thread>

struct HungFuseShare::State {
    std::mutex mutex;
    std::condition_variable released;
    bool open = false;
    int error = 0;
    struct fuse* fuse = nullptr;
    std::thread loop;
};

namespace {

HungFuseShare::State& stateOf() {
    return *static_cast<HungFuseShare::State*>(fuse_get_context()->private_data);
}

int getAttributes(const char* path, struct stat* st, fuse_file_info*) {
    if (std::strcmp(path, "/") != 0) return -ENOENT;
    *st = {};
    st->st_mode = S_IFDIR | 0755;
    st->st_nlink = 2;
    return 0;
}

int fileSystemSpace(const char*, struct statvfs* out) {
    auto& state = stateOf();
    std::unique_lock lock(state.mutex);
    state.released.wait(lock, [&] { return state.open || state.error; });
    if (state.error) return -state.error;
    *out = {};
    out->f_bsize = out->f_frsize = 4096;
    out->f_blocks = 1000;
    out->f_bfree = out->f_bavail = 250;
    return 0;
}

}  // namespace

std::unique_ptr<HungFuseShare> HungFuseShare::mount(const std::string& directory,
                                                    std::string& error) {
    static const fuse_operations operations = [] {
        fuse_operations o{};
        o.getattr = getAttributes;
        o.statfs = fileSystemSpace;
        return o;
    }();
    std::unique_ptr<HungFuseShare> share(new HungFuseShare);
    share->state_ = std::make_shared<State>();
    State& state = *share->state_;
    char program[] = "trotlet-hung-share";
    char* argv[] = {program, nullptr};
    fuse_args args = FUSE_ARGS_INIT(1, argv);
    state.fuse = fuse_new(&args, &operations, sizeof operations, &state);
    fuse_opt_free_args(&args);
    if (!state.fuse) {
        error = "libfuse could not start a file system";
        return nullptr;
    }
    if (fuse_mount(state.fuse, directory.c_str()) != 0) {
        error = "FUSE cannot mount at " + directory + " here (libfuse says why above)";
        fuse_destroy(state.fuse);
        state.fuse = nullptr;
        return nullptr;
    }
    // One thread serves every request in turn, so a statfs that waits holds up the whole
    // share, as a dead server does.
    state.loop = std::thread([fuse = state.fuse] { fuse_loop(fuse); });
    return share;
}

void HungFuseShare::release() {
    {
        std::lock_guard lock(state_->mutex);
        state_->open = true;
    }
    state_->released.notify_all();
}

void HungFuseShare::failWith(int error) {
    {
        std::lock_guard lock(state_->mutex);
        state_->error = error;
    }
    state_->released.notify_all();
}

HungFuseShare::~HungFuseShare() {
    if (!state_->fuse) return;  // never mounted
    release();
    fuse_exit(state_->fuse);
    // A lazy unmount ends the connection once nobody uses the mount; the loop's next read then
    // fails and the loop returns.
    fuse_unmount(state_->fuse);
    state_->loop.join();
    fuse_destroy(state_->fuse);
}
