// A disk whose every sync takes a while: a busy disk, a USB stick, a home
// folder on the school's file server. Loaded with LD_PRELOAD, it makes
// fsync and fdatasync of the process sleep QUILLPOST_SYNC_DELAY_MS (30 by
// default) before doing the real thing, so a benchmark shows what a user
// waits for when the disk is slow.

#include <dlfcn.h>
#include <time.h>

#include <cstdlib>

namespace {

void pause()
{
    static const long ms = [] {
        const char *value = std::getenv("QUILLPOST_SYNC_DELAY_MS");
        return value ? std::atol(value) : 30L;
    }();
    timespec delay{ms / 1000, (ms % 1000) * 1000000L};
    while (::nanosleep(&delay, &delay) != 0) {
    }
}

template <typename Fn>
Fn real(const char *name)
{
    return reinterpret_cast<Fn>(::dlsym(RTLD_NEXT, name));
}

}  // namespace

extern "C" int fsync(int fd)
{
    static const auto next = real<int (*)(int)>("fsync");
    pause();
    return next(fd);
}

extern "C" int fdatasync(int fd)
{
    static const auto next = real<int (*)(int)>("fdatasync");
    pause();
    return next(fd);
}
