// SPDX-License-Identifier: MIT
#include "host/app/software_gl.h"

#include <algorithm>

#include <malloc.h>

namespace host {

bool isSoftwareRenderer(const QByteArray &name)
{
    const auto all = {"llvmpipe", "softpipe", "swrast", "SWR", "Software"};
    return std::any_of(all.begin(), all.end(),
                       [&name](const char *each) { return name.contains(each); });
}

bool keepFreedMemory()
{
#ifdef M_TRIM_THRESHOLD
    constexpr int freed = 256 << 20;  // bytes at the heap's end; what passes that goes back
    constexpr int largest = 32 << 20; // bytes of a block that is of the heap
    return mallopt(M_TRIM_THRESHOLD, freed) == 1 && mallopt(M_MMAP_THRESHOLD, largest) == 1;
#else
    return false;
#endif
}

} // namespace host
