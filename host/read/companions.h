// SPDX-License-Identifier: MIT
#ifndef HOST_READ_COMPANIONS_H
#define HOST_READ_COMPANIONS_H

namespace host {

/// Which files a model may name: materials, buffers, pictures.
enum class Companions {
    InFolder, ///< Those in the model's own folder or below it, wherever links lead.
    Anywhere, ///< All that the user may read.
};

} // namespace host

#endif
