#include "ui/qsl/CardFace.h"

#include "qsl/CardNames.h"
#include "qsl/CardPainter.h"
#include "qsl/SignaturePictures.h"

#include <QLabel>
#include <QLineEdit>
#include <QPlainTextEdit>

#include <cmath>

namespace {

constexpr qreal MmPerPoint = 25.4 / 72.0;

QFont screenFont(const CardItem& item)
{
    QFont f(item.family);
    f.setPixelSize(
        std::max(1, static_cast<int>(std::lround(item.pointSize * MmPerPoint * CardFace::PxPerMm))));
    f.setBold(item.bold);
    f.setItalic(item.italic);
    return f;
}

QString colourName(const QColor& c)
{
    return c.name(QColor::HexRgb);
}

} // namespace

CardFace::CardFace(const CardDesign& design, QWidget* parent)
    : QFrame(parent)
    , design_(design)
{
    setObjectName(QStringLiteral("Card"));
    setFixedSize(toPixels(QRectF(QPointF(0, 0), design.size)).size());
    setFrameShape(QFrame::Box);
    setStyleSheet(QStringLiteral("#Card { background: white; border: 1px solid #9a9a9a; }"));
    for (const CardItem& item : design_.items) {
        QWidget* w = build(item);
        w->setObjectName(item.name);
        w->setGeometry(toPixels(item.rect));
        w->setFont(screenFont(item));
        fit(w, item.text);
    }
    for (QLabel** picture : { &picture1_, &picture2_ }) {
        *picture = new QLabel(this);
        (*picture)->setScaledContents(true);
        (*picture)->hide();
    }
    picture1_->setObjectName(CardName::Sign);
    picture2_->setObjectName(CardName::ClubSign);
}

QWidget* CardFace::build(const CardItem& item)
{
    const QString ink = QStringLiteral("color: %1; background: transparent;").arg(colourName(item.colour));
    if (item.kind == CardItem::Kind::Label) {
        auto* l = new QLabel(item.text, this);
        l->setAlignment(item.align);
        l->setStyleSheet(ink);
        l->setTextFormat(Qt::PlainText);
        return l;
    }
    const QString frame = QStringLiteral("border: 1px solid #282828; padding: 0px;");
    if (!item.multiLine) {
        auto* e = new QLineEdit(item.text, this);
        e->setAlignment(item.align);
        e->setStyleSheet(ink + frame);
        connect(e, &QLineEdit::textChanged, this, [this, e](const QString& text) { fit(e, text); });
        return e;
    }
    auto* e = new QPlainTextEdit(item.text, this);
    e->setLineWrapMode(QPlainTextEdit::NoWrap);
    e->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    e->setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    e->setStyleSheet(ink + frame);
    e->document()->setDocumentMargin(2);
    return e;
}

void CardFace::fit(QWidget* widget, const QString& text)
{
    const CardItem* item = design_.item(widget->objectName());
    if (!item || item->multiLine)
        return;
    // A line edit keeps a few pixels of margin inside its frame.
    const QSizeF room = widget->contentsRect().adjusted(3, 0, -3, 0).size();
    widget->setFont(CardPainter::fitted(screenFont(*item), text, room, widget, false));
}

QRect CardFace::toPixels(const QRectF& mm) const
{
    return QRectF(mm.x() * PxPerMm, mm.y() * PxPerMm, mm.width() * PxPerMm, mm.height() * PxPerMm).toRect();
}

CardDesign CardFace::design() const
{
    CardDesign d = design_;
    for (CardItem& item : d.items) {
        const QWidget* w = findChild<QWidget*>(item.name, Qt::FindDirectChildrenOnly);
        if (!w)
            continue;
        const QRect g = w->geometry();
        item.rect = QRectF(g.x() / PxPerMm, g.y() / PxPerMm, g.width() / PxPerMm, g.height() / PxPerMm);
        item.text = text(item.name);
    }
    return d;
}

void CardFace::setText(const QString& name, const QString& text)
{
    QWidget* w = findChild<QWidget*>(name, Qt::FindDirectChildrenOnly);
    if (auto* l = qobject_cast<QLabel*>(w)) {
        l->setText(text);
        fit(l, text);
    } else if (auto* e = qobject_cast<QLineEdit*>(w))
        e->setText(text);
    else if (auto* p = qobject_cast<QPlainTextEdit*>(w))
        p->setPlainText(text);
}

QString CardFace::text(const QString& name) const
{
    const QWidget* w = findChild<QWidget*>(name, Qt::FindDirectChildrenOnly);
    if (const auto* l = qobject_cast<const QLabel*>(w))
        return l->text();
    if (const auto* e = qobject_cast<const QLineEdit*>(w))
        return e->text();
    if (const auto* p = qobject_cast<const QPlainTextEdit*>(w))
        return p->toPlainText();
    return QString();
}

void CardFace::setTexts(const CardDesign& design)
{
    for (const CardItem& item : design.items) {
        if (text(item.name) != item.text)
            setText(item.name, item.text);
    }
}

void CardFace::showPictures(const SignaturePictures& pictures)
{
    const auto show = [this](QLabel* box, const QImage& image, const QRectF& mm) {
        box->setVisible(!image.isNull());
        if (image.isNull())
            return;
        box->setGeometry(toPixels(mm));
        box->setPixmap(QPixmap::fromImage(image));
        box->raise();
    };
    show(picture1_, pictures.sign, pictures.signRect(design_.size));
    show(picture2_, pictures.clubSign, pictures.clubSignRect(design_.size));
}
