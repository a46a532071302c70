#pragma once
// DataGrid1: the beacon table view with a caption (the row count of the last load) and the
// Delete key asking the panel to delete the current row.
#include <QTableView>

class BeaconGrid : public QTableView {
    Q_OBJECT
    Q_PROPERTY(QString caption READ caption WRITE setCaption NOTIFY captionChanged)
public:
    explicit BeaconGrid(QWidget* parent = nullptr);

    QString caption() const { return caption_; }
    void setCaption(const QString& caption);

signals:
    void captionChanged(const QString& caption);
    void deleteRequested(int row);

protected:
    void keyPressEvent(QKeyEvent* event) override;

private:
    QString caption_;
};
