#include "mapexport/ImportLocator.h"

namespace {
// A file of all-different grids must not grow the memory without end.
constexpr qsizetype kMaxRemembered = 65536;
}

ImportLocator::ImportLocator(const QString& ownLocatorSetting)
    : home_(HomePoint(ownLocatorSetting))
{
}

bool ImportLocator::operator()(const QString& locator, MapPosition& p)
{
    auto it = seen_.constFind(locator);
    if (it == seen_.cend()) {
        if (seen_.size() >= kMaxRemembered)
            seen_.clear();
        MapPosition found;
        std::optional<MapPosition> entry;
        if (LocateContact(locator, home_, found))
            entry = std::move(found);
        it = seen_.insert(locator, std::move(entry));
    }
    if (!*it)
        return false;
    p = **it;
    return true;
}
