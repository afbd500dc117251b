// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_ADD_BYTES_H
#define HOST_ITEM_ADD_BYTES_H

#include <QByteArray>

namespace host {

/// Writes a plain value down as it lies in memory, for keys that are only compared.
template <typename Value> void addBytes(QByteArray &to, const Value &value)
{
    to.append(reinterpret_cast<const char *>(&value), int(sizeof value));
}

} // namespace host

#endif
