#pragma once
// The column widths of the log grid, set after every new binding: the steps in the order they
// are applied (column 14 is set twice, and the second width, 2500, is the one that holds;
// deliberate), in twips, and their conversion to pixels.
#include <QList>

struct ColumnWidth {
    int column;
    int twips;
};

namespace GridColumns {
// 0:10, 1:900, 2:450, 3:1000, 4:1100, 5:500, 6:500, 7:1300, 8:500, 9:1200, 10:700, 11:700,
// 12:500, 13:400, 14:1200, 15:500, then 14:2500. Column 16 on keeps the grid's default width.
QList<ColumnWidth> steps();
// The width each column ends with (index = column), after all steps.
QList<int> finalTwips();
// Twips (1/1440 inch) to pixels at `dpi`, at least 1 pixel.
int toPixels(int twips, double dpi);
} // namespace GridColumns
