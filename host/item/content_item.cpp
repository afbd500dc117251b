// SPDX-License-Identifier: MIT
#include "host/item/content_item.h"

#include "host/item/model_item.h"
#include "host/item/series_item.h"

namespace host {

std::shared_ptr<Item> itemOf(const QString &name, const Content &content)
{
    if (content.mesh)
        return std::make_shared<ModelItem>(name, content.mesh);
    if (content.table)
        return std::make_shared<SeriesItem>(content.table);
    return nullptr;
}

} // namespace host
