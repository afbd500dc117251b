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

void keepFreedMemory()
{
#ifdef M_TRIM_THRESHOLD
    mallopt(M_TRIM_THRESHOLD, 256 << 20); // bytes at the heap's end; what passes that goes back
    mallopt(M_MMAP_THRESHOLD, 32 << 20);  // bytes of the largest block that is of the heap
#endif
}

} // namespace host
