#pragma once
// WSJT-X's datagram format read without I/O: a big-endian header (magic 0xadbccbda, schema,
// type, sender id), then the fields of the type in Qt's QDataStream encoding (schema 2: Qt 5.2,
// schema 3: Qt 5.4). Strings are UTF-8 with a 32-bit length (0xffffffff: null). A datagram
// that is not one of these, or whose fields run past its end or are not UTF-8, is refused with
// the reason. Fields a newer sender appends are ignored; fields an older one leaves off at the
// end of QSO Logged stay empty.
#include "wsjtx/WsjtxMessage.h"

#include <QByteArray>

struct WsjtxDecoded {
    bool ok = false;
    QString error; // why the datagram was refused
    WsjtxMessage message;
};

namespace WsjtxCodec {
inline constexpr quint32 Magic = 0xadbccbda;
WsjtxDecoded decode(const QByteArray& datagram);
} // namespace WsjtxCodec
