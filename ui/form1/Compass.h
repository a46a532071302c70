#pragma once
// The rotator picture: a compass card redrawn on every tick with the antenna heading as a
// red line from the centre (north up, clockwise); without a heading, no needle and a note.
#include <QPixmap>
#include <QWidget>

#include <optional>

class Compass : public QWidget {
    Q_OBJECT
public:
    explicit Compass(QWidget* parent = nullptr);

    // Clears the picture and draws the line for `degrees`; nothing means no heading known.
    void setHeading(std::optional<int> degrees);
    std::optional<int> heading() const { return heading_; }

    QSize sizeHint() const override { return { 190, 190 }; }
    QSize minimumSizeHint() const override { return { 120, 120 }; }
    bool hasHeightForWidth() const override { return true; }
    int heightForWidth(int w) const override { return w; }

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    // The card without the heading line, drawn once per size: a tick then costs one line.
    void drawCard();

    std::optional<int> heading_;
    QPixmap card_;
};
