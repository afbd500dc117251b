// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_BUFFER_OFFSET_H
#define HOST_ITEM_BUFFER_OFFSET_H

#include <cstddef>

namespace host {

/// A place in the buffer object that is bound, in bytes from its begin, as GL's calls for arrays
/// take it.
inline const void *bufferOffset(std::size_t bytes)
{
    return reinterpret_cast<const void *>(bytes);
}

} // namespace host

#endif
