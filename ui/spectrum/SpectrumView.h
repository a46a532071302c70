#pragma once
// Picture2: shows the spectrum picture, which keeps its drawing between repaints.
#include "audio/SpectrumPicture.h"

#include <QWidget>

class SpectrumView : public QWidget {
    Q_OBJECT
public:
    explicit SpectrumView(QWidget* parent = nullptr);

    SpectrumPicture& picture() { return picture_; }
    QSize sizeHint() const override { return QSize(400, 300); }
    QSize minimumSizeHint() const override { return QSize(120, 90); }

signals:
    // The picture was made anew at the widget's size and needs drawing.
    void resized();

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    SpectrumPicture picture_;
};
