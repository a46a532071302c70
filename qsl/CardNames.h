#pragma once
// Names of the card's controls: the window's objectName of each label and text box, and the
// key of its item in a card design.
#include <QString>

namespace CardName {
inline const QString Greeting = QStringLiteral("Label4");
inline const QString Confirmation = QStringLiteral("Label1");
inline const QString Closing = QStringLiteral("Label3");
inline const QString Manager = QStringLiteral("Label10");
inline const QString Callsign = QStringLiteral("Cal");
inline const QString Date = QStringLiteral("datem");
inline const QString Time = QStringLiteral("utc");
inline const QString Band = QStringLiteral("qrg");
inline const QString Mode = QStringLiteral("mode");
inline const QString Report = QStringLiteral("rsts");
inline const QString Distance = QStringLiteral("qrb");
inline const QString Bearing = QStringLiteral("qtf");
// The station's own lines (settings 5, 6 and 35 to 40).
inline const QString MyCall = QStringLiteral("lblMyCall");
inline const QString MyGrid = QStringLiteral("lblMyGrid");
inline const QString Info = QStringLiteral("lblInfo");
inline const QString Line2 = QStringLiteral("lblLine2");
inline const QString Line3 = QStringLiteral("lblLine3");
inline const QString Line4 = QStringLiteral("lblLine4");
inline const QString Address = QStringLiteral("lblAddress");
inline const QString Foot = QStringLiteral("lblFoot");
// Picture boxes of the signature pictures.
inline const QString Sign = QStringLiteral("Picture1");
inline const QString ClubSign = QStringLiteral("Picture2");
} // namespace CardName
