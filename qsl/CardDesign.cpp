#include "qsl/CardDesign.h"

#include "core/SettingsTable.h"
#include "qsl/CardNames.h"
#include "qsl/QslText.h"

namespace {

using Kind = CardItem::Kind;

const QColor Ink(0, 0, 0);
const QColor CallBlue(22, 54, 120);
const QColor GreetingRed(150, 24, 24);
const QColor HeadGrey(70, 70, 70);

CardItem label(const QString& name, QRectF rect, qreal pt, const QString& text = QString(),
    Qt::Alignment align = Qt::AlignLeft | Qt::AlignVCenter)
{
    CardItem i;
    i.name = name;
    i.kind = Kind::Label;
    i.rect = rect;
    i.family = CardDesign::Family;
    i.pointSize = pt;
    i.align = align;
    i.colour = Ink;
    i.text = text;
    return i;
}

CardItem box(const QString& name, QRectF rect, qreal pt, bool multiLine = true)
{
    CardItem i = label(name, rect, pt, QString(), Qt::AlignLeft | Qt::AlignTop);
    i.kind = Kind::Box;
    i.multiLine = multiLine;
    return i;
}

struct Column {
    const QString& box;
    const char* heading;
    qreal x;
    qreal width;
};

} // namespace

CardDesign CardDesign::standard()
{
    CardDesign d;
    const Qt::Alignment right = Qt::AlignRight | Qt::AlignVCenter;

    // Head: the own callsign large on the left, locator and info line on the right.
    CardItem call = label(CardName::MyCall, { 6, 3, 80, 15 }, 32);
    call.bold = true;
    call.colour = CallBlue;
    d.items << call;
    CardItem grid = label(CardName::MyGrid, { 84, 4, 50, 6 }, 12, QString(), right);
    grid.bold = true;
    d.items << grid;
    d.items << label(CardName::Info, { 60, 11, 74, 5 }, 8, QString(), right);

    // The confirmation: greeting and line on the left, the other station's callsign beside.
    CardItem greeting = label(CardName::Greeting, { 6, 19.5, 58, 7 }, 13);
    greeting.bold = true;
    greeting.colour = GreetingRed;
    d.items << greeting;
    d.items << label(CardName::Confirmation, { 6, 27, 60, 5 }, 9, QslText::ConfirmQso);
    CardItem cal = box(CardName::Callsign, { 68, 19.5, 66, 13 }, 24, false);
    cal.bold = true;
    cal.align = Qt::AlignCenter;
    d.items << cal;
    d.items << label(CardName::Manager, { 68, 32.8, 66, 4.5 }, 8, QString(), right);

    // The contacts: one column per field, headings above the framed boxes.
    const Column columns[] = {
        { CardName::Date, "Date", 6, 24 },
        { CardName::Time, "UTC", 31, 16 },
        { CardName::Band, "Band", 48, 22 },
        { CardName::Mode, "Mode", 71, 14 },
        { CardName::Report, "RST", 86, 12 },
        { CardName::Distance, "QRB km", 99, 17 },
        { CardName::Bearing, "QTF \u00B0", 117, 17 },
    };
    for (const Column& c : columns) {
        CardItem head = label(QStringLiteral("lblHead_") + c.box, { c.x, 37.5, c.width, 4 }, 7,
            QString::fromUtf8(c.heading), Qt::AlignLeft | Qt::AlignBottom);
        head.colour = HeadGrey;
        d.items << head;
        d.items << box(c.box, { c.x, 41.5, c.width, 17.5 }, 9);
    }

    // The station's free lines on the left, the closing line above the signatures on the right.
    d.items << label(CardName::Line2, { 6, 60.5, 60, 4.5 }, 8);
    d.items << label(CardName::Line3, { 6, 65, 60, 4.5 }, 8);
    d.items << label(CardName::Line4, { 6, 69.5, 60, 4.5 }, 8);
    CardItem closing = label(CardName::Closing, { 68, 60.5, 66, 5 }, 10, QslText::ClosingQso, right);
    closing.italic = true;
    d.items << closing;
    d.items << label(CardName::Address, { 6, 76.5, 98, 4.5 }, 8);
    d.items << label(CardName::Foot, { 6, 81, 98, 4.5 }, 8);
    return d;
}

CardItem* CardDesign::item(const QString& name)
{
    for (CardItem& i : items) {
        if (i.name == name)
            return &i;
    }
    return nullptr;
}

const CardItem* CardDesign::item(const QString& name) const
{
    return const_cast<CardDesign*>(this)->item(name);
}

QString CardDesign::text(const QString& name) const
{
    const CardItem* i = item(name);
    return i ? i->text : QString();
}

void CardDesign::setText(const QString& name, const QString& text)
{
    if (CardItem* i = item(name))
        i->text = text;
}

void CardDesign::setTexts(const CardTexts& texts)
{
    for (auto it = texts.cbegin(); it != texts.cend(); ++it)
        setText(it.key(), it.value());
}

void setStationLines(CardDesign& d, const SettingsTable& s)
{
    d.setText(CardName::MyCall, s.textAt(Setting::MyCall).trimmed().toUpper());
    d.setText(CardName::MyGrid, QslText::ownLocatorLine(s.textAt(Setting::MyLocator)));
    d.setText(CardName::Info, s.textAt(Setting::QslInfo));
    d.setText(CardName::Line2, s.textAt(Setting::QslLine2));
    d.setText(CardName::Line3, s.textAt(Setting::QslLine3));
    d.setText(CardName::Line4, s.textAt(Setting::QslLine4));
    d.setText(CardName::Address, s.textAt(Setting::QslAddress));
    d.setText(CardName::Foot, s.textAt(Setting::QslFoot));
}
