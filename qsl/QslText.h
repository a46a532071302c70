#pragma once
// The fixed texts of a QSL card and the text forms of a contact's fields on it: greeting,
// confirmation and closing line by selection letter, the status letter that follows printing,
// and the band, date and time formats with their blanks. Pure text, no I/O.
#include <QString>
#include <QVariant>

namespace QslText {
// Selection letters of the window's buttons.
inline const QString LetterDue = QStringLiteral("Y");
inline const QString LetterSend = QStringLiteral("S");
inline const QString LetterThanks = QStringLiteral("T");
inline const QString LetterBeacon = QStringLiteral("B");
inline const QString LetterEmpty = QStringLiteral("X");

inline const QString Thanks = QStringLiteral("TNX QSL");
inline const QString Please = QStringLiteral("PSE QSL");
inline const QString ConfirmBeacon = QStringLiteral("Confirming heard Beacon:");
inline const QString ConfirmQso = QStringLiteral("Confirming 2-way QSO with:");
inline const QString ClosingBeacon = QStringLiteral("Best 73 de");
inline const QString ClosingQso = QStringLiteral("tnx fer QSO Best 73 de");
inline const QString NoRecordset = QStringLiteral("No new Recorset available");

// Label4: "TNX QSL" for "T", else "PSE QSL".
QString greeting(const QString& letter);
// Label1: the beacon line for "B", else the 2-way QSO line.
QString confirmation(const QString& letter);
// Label3: "Best 73 de" for "B", else "tnx fer QSO Best 73 de".
QString closing(const QString& letter);

// The letter a contact's QSL column takes when its card is read for printing: T->Q, S->D,
// Y->N, B->N (compared without case, as the query's LIKE selects them); any other letter
// stays as it is.
QString nextStatus(const QString& qsl);

// "    #######,###": four blanks, then the band as a whole number with "," between thousands
// ("14200" -> "    14,200", "144" -> "    144"). Zero shows no digits; a text that is not a
// number is kept as it stands.
QString formatBand(const QString& band);
// " dd.MM.yyyy" of a stored date (yyyy-MM-dd or dd.MM.yyyy); anything else unchanged.
QString formatDate(const QString& date);
// "  HH:mm " of a time text ("18:20:05", "18:20", "1820"); anything else unchanged.
QString formatTime(const QString& time);
// Distance or bearing as stored, in the default text form of a single-precision number
// ("512.4", "87"); the card prints them unformatted. Empty for no value.
QString formatNumber(const QVariant& value);

// The own locator line of the card: "Loc: " + locator. A locator of 8 or 10 characters keeps
// its square (first 6) in capitals and writes the extension with its letters in lower case
// ("JO62QM48AB" -> "JO62QM48ab"), the usual way to set the finer digits apart. Other texts are
// shown upper-cased as typed; an empty locator gives an empty line.
QString ownLocatorLine(const QString& locator);
// Label10: "via " + QSL manager, or empty when there is none.
QString managerLine(const QString& manager);
} // namespace QslText
