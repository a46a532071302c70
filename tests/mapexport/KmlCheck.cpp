#include "tests/mapexport/KmlCheck.h"

#include <QFile>
#include <QProcess>
#include <QXmlStreamReader>

using namespace Qt::StringLiterals;

QString XmlLintErrors(const QString& path)
{
    QProcess p;
    p.start(QStringLiteral("xmllint"), { QStringLiteral("--noout"), path });
    if (!p.waitForFinished(30000))
        return QStringLiteral("xmllint did not run");
    if (p.exitStatus() == QProcess::NormalExit && p.exitCode() == 0)
        return {};
    return QString::fromLocal8Bit(p.readAllStandardError()) + QStringLiteral(" (exit ")
        + QString::number(p.exitCode()) + u')';
}

KmlShape ReadKml(const QByteArray& bytes)
{
    KmlShape s;
    QXmlStreamReader r(bytes);
    QStringList open; // the elements around the current one
    bool ring = false; // the current polygon has a five-point ring
    while (!r.atEnd()) {
        r.readNext();
        const QString n = r.name().toString();
        if (r.isStartElement() && n == u"coordinates") {
            const QString text = r.readElementText().trimmed();
            if (open.contains(u"Point"_s) && !text.isEmpty())
                ++s.points;
            ring = ring
                || (open.contains(u"LinearRing"_s) && text.split(u' ', Qt::SkipEmptyParts).size() == 5);
        } else if (r.isStartElement()) {
            open << n;
            s.placemarks += n == u"Placemark";
            s.lines += n == u"LineString";
            ring = ring && n != u"Polygon";
        } else if (r.isEndElement()) {
            open.removeLast();
            if (n == u"Polygon")
                ++(ring ? s.polygons : s.emptyPolygons);
        }
    }
    s.ok = !r.hasError();
    return s;
}

::testing::AssertionResult MatchesGolden(const QString& name, const QByteArray& bytes)
{
    const QString path = QStringLiteral(KESTREL_GOLDEN_DIR "/") + name;
    if (qEnvironmentVariableIntValue("KESTREL_UPDATE_GOLDEN") == 1) {
        QFile out(path);
        if (!out.open(QIODevice::WriteOnly | QIODevice::Truncate) || out.write(bytes) != bytes.size())
            return ::testing::AssertionFailure() << "cannot write golden " << path.toStdString();
        return ::testing::AssertionSuccess();
    }
    QFile in(path);
    if (!in.open(QIODevice::ReadOnly))
        return ::testing::AssertionFailure()
            << "no golden " << path.toStdString() << " (run with KESTREL_UPDATE_GOLDEN=1 to make it)";
    const QByteArray want = in.readAll();
    if (want == bytes)
        return ::testing::AssertionSuccess();
    qsizetype at = 0;
    while (at < want.size() && at < bytes.size() && want[at] == bytes[at])
        ++at;
    return ::testing::AssertionFailure() << name.toStdString() << " differs at byte " << at
                                         << ":\n  golden: " << want.mid(at, 80).toStdString()
                                         << "\n  written: " << bytes.mid(at, 80).toStdString();
}
