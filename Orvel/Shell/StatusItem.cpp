#include "StatusItem.h"

#include "TrayStatusItem.h"

namespace orvel {

std::unique_ptr<StatusItem> StatusItem::create(QObject *parent)
{
    return std::make_unique<TrayStatusItem>(parent);
}

} // namespace orvel
