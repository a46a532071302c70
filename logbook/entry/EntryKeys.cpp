#include "logbook/entry/EntryKeys.h"

namespace EntryKeys {

EntryField next(EntryField field, EntryKey key)
{
    const bool enter = key == EntryKey::Enter;
    switch (field) {
    case EntryField::Ca:
        return enter || key == EntryKey::Right ? EntryField::Gr : field;
    case EntryField::Gr:
        if (enter || key == EntryKey::Right)
            return EntryField::Rss;
        return key == EntryKey::Left ? EntryField::Ca : field;
    case EntryField::Rss:
        return enter ? EntryField::Rr : field;
    case EntryField::Rr:
        return enter ? EntryField::Ba : field;
    case EntryField::Ba:
        return enter ? EntryField::mo : field;
    case EntryField::mo:
        return enter ? EntryField::Na : field;
    case EntryField::Na:
        return enter ? EntryField::Co : field;
    case EntryField::Co:
        return enter ? EntryField::Qs : field;
    case EntryField::Qs:
        return enter ? EntryField::Pr : field;
    case EntryField::Pr:
        return enter ? EntryField::Save : field;
    default:
        return field;
    }
}

bool moves(EntryField field, EntryKey key)
{
    return next(field, key) != field;
}

} // namespace EntryKeys
