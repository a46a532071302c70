#include "ui/beacons/BeaconGrid.h"

#include <QHeaderView>
#include <QKeyEvent>

BeaconGrid::BeaconGrid(QWidget* parent)
    : QTableView(parent)
{
    setObjectName(QStringLiteral("DataGrid1"));
    setSelectionBehavior(QAbstractItemView::SelectRows);
    setSelectionMode(QAbstractItemView::SingleSelection);
    setEditTriggers(QAbstractItemView::NoEditTriggers);
    setAlternatingRowColors(true);
    setWordWrap(false);
    verticalHeader()->setVisible(false);
    verticalHeader()->setDefaultSectionSize(fontMetrics().height() + 6);
    // Fixed widths: measuring ten thousand rows on every load would cost more than the load.
    horizontalHeader()->setSectionResizeMode(QHeaderView::Interactive);
    horizontalHeader()->setDefaultSectionSize(
        fontMetrics().horizontalAdvance(QStringLiteral("0000000000000")));
    horizontalHeader()->setStretchLastSection(true);
    setToolTip(QStringLiteral("Click a beacon to aim at it; Delete removes the row"));
}

void BeaconGrid::setCaption(const QString& caption)
{
    if (caption == caption_)
        return;
    caption_ = caption;
    emit captionChanged(caption_);
}

void BeaconGrid::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Delete && currentIndex().isValid()) {
        emit deleteRequested(currentIndex().row());
        event->accept();
        return;
    }
    QTableView::keyPressEvent(event);
}
