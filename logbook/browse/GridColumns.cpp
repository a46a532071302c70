#include "logbook/browse/GridColumns.h"

#include <algorithm>
#include <cmath>

namespace GridColumns {

QList<ColumnWidth> steps()
{
    return { { 0, 10 }, { 1, 900 }, { 2, 450 }, { 3, 1000 }, { 4, 1100 }, { 5, 500 }, { 6, 500 }, { 7, 1300 },
        { 8, 500 }, { 9, 1200 }, { 10, 700 }, { 11, 700 }, { 12, 500 }, { 13, 400 }, { 14, 1200 },
        { 15, 500 }, { 14, 2500 } };
}

QList<int> finalTwips()
{
    QList<int> out;
    for (const ColumnWidth& s : steps()) {
        if (s.column >= out.size())
            out.resize(s.column + 1);
        out[s.column] = s.twips;
    }
    return out;
}

int toPixels(int twips, double dpi)
{
    return std::max(1, int(std::lround(twips * dpi / 1440.0)));
}

} // namespace GridColumns
