#pragma once
// The QSL card's design: every label and text box of the card window with its place and size
// in millimetres on a 140 x 90 mm card, its font and its text. The window is built from this
// design and hands it back, with what it shows, for printing; tests print it directly.
#include "qsl/QslCards.h"

#include <QColor>
#include <QList>
#include <QRectF>
#include <QSizeF>
#include <QString>

class SettingsTable;

struct CardItem {
    enum class Kind { Label, Box };

    QString name; // the control's objectName
    Kind kind = Kind::Label;
    QRectF rect; // millimetres from the card's top-left corner
    QString family;
    qreal pointSize = 9.0; // printed size in points
    bool bold = false;
    bool italic = false;
    Qt::Alignment align = Qt::AlignLeft | Qt::AlignVCenter;
    QColor colour = Qt::black;
    QString text;
    bool multiLine = false; // a box that holds one line per contact
};

class CardDesign {
public:
    static constexpr qreal WidthMm = 140.0;
    static constexpr qreal HeightMm = 90.0;
    static inline const QString Family = QStringLiteral("DejaVu Sans");

    // The card as the window shows it when it opens: fixed captions, the 2-way QSO lines,
    // an empty greeting and empty text boxes.
    static CardDesign standard();

    QSizeF size { WidthMm, HeightMm };
    QList<CardItem> items;

    CardItem* item(const QString& name);
    const CardItem* item(const QString& name) const;
    QString text(const QString& name) const;
    void setText(const QString& name, const QString& text);
    void setTexts(const CardTexts& texts);
};

// The station's own lines from the settings: callsign (5), locator (6), info line (35), free
// lines (36 to 38), address (39) and foot line (40).
void setStationLines(CardDesign& design, const SettingsTable& settings);
