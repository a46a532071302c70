#include "mapexport/RunCounter.h"

bool RunCounter::add(const QString& column)
{
    if (overflowed_)
        return false;
    const QString key = column.left(kind_ == Kind::Squares ? 4 : 8);
    if (kind_ == Kind::Entities) {
        // The second list keeps every record's key by its position.
        if (++position_ > kLastIndex) {
            overflowed_ = true;
            return false;
        }
        if (!started_) {
            started_ = true;
            last_ = key; // list entry 1 preset with the first key: nothing counted twice
        }
        if (key == last_)
            return false;
    } else if (count_ != 1 && key == last_) {
        return false; // exact, case-sensitive: jn48 and JN48 are two squares
    }
    if (count_ + 1 > kLastIndex) {
        overflowed_ = true;
        return false;
    }
    ++count_;
    last_ = key;
    return true;
}
