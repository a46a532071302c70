// libFuzzer harness over the four NMEA parsers, the receive buffer and what the GPS window makes
// of their outputs. Built and run by scripts/fuzz-nmea; not part of the test program.
#include "gps/GpsDisplay.h"
#include "gps/GpsReceiver.h"
#include "gps/Nmea.h"

#include <cstdint>
#include <cstdlib>

namespace {

void check(bool ok)
{
    if (!ok)
        std::abort();
}

void parseAll(const QString& text)
{
    RmcData r;
    if (ParseRMC(text, r)) {
        GpsDisplay::numberText(r.latitude);
        if (auto p = PositionFrom(r.latitude, r.latHemisphere, r.longitude, r.lonHemisphere))
            check(PositionToLocator(*p).size() == 6);
    }
    GgaData g;
    if (ParseGGA(text, g))
        GpsDisplay::numberText(g.altitude);
    GsaData a;
    ParseGSA(text, a);
    GsvData v;
    if (ParseGSV(text, v))
        GpsDisplay::gsvGroups(v);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const uint8_t* data, size_t size)
{
    const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
    parseAll(QString::fromLatin1(bytes));
    parseAll(QString::fromUtf8(bytes));

    // The same bytes through the receive buffer in pieces whose length the first byte picks,
    // as a serial port hands them over.
    GpsReceiver receiver;
    const qsizetype step = size ? 1 + data[0] % 97 : 1;
    for (qsizetype at = 0; at < bytes.size(); at += step) {
        for (const GpsReceiver::Decoded& d : receiver.feed(bytes.mid(at, step))) {
            check(d.sentence.startsWith(u'$') && !d.sentence.contains(QStringLiteral("\r\n")));
            if (d.type == NmeaReceiveBuffer::Type::GSV)
                GpsDisplay::gsvGroups(d.gsv);
        }
        check(receiver.buffer().pending().size() <= NmeaReceiveBuffer::kMaxPending);
        GpsDisplay::gridText(receiver.fix(), receiver.position());
    }
    return 0;
}
