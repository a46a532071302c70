#include "tests/mapexport/KmlCheck.h"

#include <QFile>
#include <QProcess>
#include <QXmlStreamReader>

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
    bool inPolygon = false;
    bool polygonHasRing = false;
    bool inRing = false;
    bool inPoint = false;
    while (!r.atEnd()) {
        r.readNext();
        if (r.isStartElement()) {
            const QStringView n = r.name();
            if (n == u"Placemark")
                ++s.placemarks;
            else if (n == u"Point")
                inPoint = true;
            else if (n == u"LineString")
                ++s.lines;
            else if (n == u"Polygon")
                inPolygon = true, polygonHasRing = false;
            else if (n == u"LinearRing")
                inRing = true;
            else if (n == u"coordinates") {
                const QString text = r.readElementText().trimmed();
                if (inPoint && !text.isEmpty())
                    ++s.points;
                if (inPolygon && inRing && text.split(u' ', Qt::SkipEmptyParts).size() == 5)
                    polygonHasRing = true;
            }
        } else if (r.isEndElement()) {
            const QStringView n = r.name();
            if (n == u"Point")
                inPoint = false;
            else if (n == u"LinearRing")
                inRing = false;
            else if (n == u"Polygon") {
                inPolygon = false;
                ++(polygonHasRing ? s.polygons : s.emptyPolygons);
            }
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
