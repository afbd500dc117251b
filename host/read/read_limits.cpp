// SPDX-License-Identifier: MIT
#include "host/read/read_limits.h"

#include <algorithm>

#include <sys/resource.h>
#include <unistd.h>

// GCC defines the macro; Clang answers the question, which Qt's headers answer with no elsewhere.
// Its shadow memory takes terabytes of address space.
#if defined(__SANITIZE_ADDRESS__)
#define HOST_ADDRESS_SANITIZER 1
#elif defined(__has_feature)
#define HOST_ADDRESS_SANITIZER __has_feature(address_sanitizer)
#else
#define HOST_ADDRESS_SANITIZER 0
#endif

namespace host {

quint64 physicalMemory()
{
    const long pages = sysconf(_SC_PHYS_PAGES), size = sysconf(_SC_PAGESIZE);
    return pages > 0 && size > 0 ? quint64(pages) * quint64(size) : quint64(1) << 30;
}

ReadLimits ReadLimits::forSize(qint64 bytes) const
{
    constexpr int hour = 3600;
    const int mebibytes = int(std::min<qint64>(bytes >> 20, hour));
    ReadLimits limits = *this;
    limits.cpuSeconds = std::min(hour, cpuSeconds + 2 * mebibytes);
    limits.wallSeconds = std::min(hour, wallSeconds + 6 * mebibytes);
    return limits;
}

bool canLimitMemory()
{
    return !HOST_ADDRESS_SANITIZER;
}

ReadLimits defaultReadLimits()
{
    ReadLimits limits;
    limits.memory = std::min(quint64(4) << 30, physicalMemory() / 2);
    rlimit own{};
    if (getrlimit(RLIMIT_AS, &own) == 0 && own.rlim_cur != RLIM_INFINITY)
        limits.memory = std::min(limits.memory, quint64(own.rlim_cur));
    return limits;
}

} // namespace host
