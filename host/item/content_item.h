// SPDX-License-Identifier: MIT
#ifndef HOST_ITEM_CONTENT_ITEM_H
#define HOST_ITEM_CONTENT_ITEM_H

#include <memory>

#include "host/item/item.h"
#include "host/read/content.h"

namespace host {

/// The item that shows a mesh or a table, called @p name; null if there is neither.
std::shared_ptr<Item> itemOf(const QString &name, const Content &content);

} // namespace host

#endif
