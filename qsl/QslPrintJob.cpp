#include "qsl/QslPrintJob.h"

#include "qsl/CardDesign.h"
#include "qsl/CardPainter.h"
#include "qsl/QslLogging.h"

#include <QDir>
#include <QFileInfo>
#include <QPageLayout>
#include <QPainter>
#include <QPrinter>

#include <algorithm>

namespace {

QString deviceName(const QPagedPaintDevice& device)
{
    const auto* printer = dynamic_cast<const QPrinter*>(&device);
    if (!printer)
        return QStringLiteral("the output device");
    if (printer->outputFormat() == QPrinter::PdfFormat)
        return QStringLiteral("the PDF file \"%1\"").arg(QDir::toNativeSeparators(printer->outputFileName()));
    return QStringLiteral("the printer \"%1\"").arg(printer->printerName());
}

} // namespace

void QslPrintJob::useCardPage(QPagedPaintDevice& device)
{
    const QPageSize card(QSizeF(CardDesign::WidthMm, CardDesign::HeightMm), QPageSize::Millimeter,
        QStringLiteral("QSL card 140 x 90 mm"), QPageSize::ExactMatch);
    device.setPageLayout(
        QPageLayout(card, QPageLayout::Portrait, QMarginsF(0, 0, 0, 0), QPageLayout::Millimeter));
}

QString QslPrintJob::preflight(const QPrinter& printer)
{
    if (printer.outputFormat() == QPrinter::PdfFormat) {
        const QString file = printer.outputFileName();
        if (file.isEmpty())
            return QStringLiteral("no PDF file has been chosen (Printer...).");
        const QFileInfo info(file);
        const QFileInfo folder(info.absolutePath());
        if (!folder.isDir())
            return QStringLiteral("the folder of the PDF file \"%1\" does not exist.")
                .arg(QDir::toNativeSeparators(file));
        if (info.isDir())
            return QStringLiteral("\"%1\" is a folder, not a PDF file.").arg(QDir::toNativeSeparators(file));
        if (!folder.isWritable() || (info.exists() && !info.isWritable()))
            return QStringLiteral("the PDF file \"%1\" cannot be written.")
                .arg(QDir::toNativeSeparators(file));
        return QString();
    }
    if (!printer.isValid() || printer.printerName().isEmpty())
        return QStringLiteral("no printer is installed or chosen (Printer...).");
    return QString();
}

int QslPrintJob::paintPages(QPainter& painter, QPagedPaintDevice& device, const CardDesign& design,
    const QList<CardTexts>& cards, const SignaturePictures& pictures, QString* error)
{
    const qreal pxPerMm = device.logicalDpiX() / 25.4;
    const qreal fit = std::min({ 1.0, device.width() / (design.size.width() * pxPerMm),
        device.height() / (design.size.height() * pxPerMm) });
    const int count = std::max<int>(1, cards.size());
    for (int i = 0; i < count; ++i) {
        if (i > 0 && !device.newPage()) {
            if (error)
                *error = QStringLiteral("%1 did not take page %2.").arg(deviceName(device)).arg(i + 1);
            return i;
        }
        CardDesign card = design;
        if (!cards.isEmpty())
            card.setTexts(cards.at(i));
        CardPainter::paint(painter, card, pictures, QPointF(0, 0), pxPerMm * fit);
    }
    return count;
}

PrintResult QslPrintJob::print(QPagedPaintDevice& device, const CardDesign& design,
    const QList<CardTexts>& cards, const SignaturePictures& pictures)
{
    PrintResult result;
    QPainter painter;
    if (!painter.begin(&device)) {
        result.ok = false;
        result.error = QStringLiteral("%1 could not be opened for printing.").arg(deviceName(device));
        qCWarning(lcQsl) << result.error;
        return result;
    }
    QString error;
    result.pages = paintPages(painter, device, design, cards, pictures, &error);
    const bool ended = painter.end();
    const auto* printer = dynamic_cast<const QPrinter*>(&device);
    const bool deviceError = printer
        && (printer->printerState() == QPrinter::Error || printer->printerState() == QPrinter::Aborted);
    if (!error.isEmpty() || !ended || deviceError) {
        result.ok = false;
        result.error = !error.isEmpty()
            ? error
            : QStringLiteral("%1 reported an error while printing.").arg(deviceName(device));
        qCWarning(lcQsl) << result.error;
    }
    return result;
}
