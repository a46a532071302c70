#pragma once
// The weather line of the main window: the summary page's address with its query, and the
// four values taken from the page text after their captions.
#include <QString>
#include <QUrl>

namespace Weather {
// The page address with "view=summary&headers=0" added to whatever query it already has.
// An empty or unusable address gives an invalid URL.
QUrl summaryUrl(const QString& address);

// The text after `caption`: tags and separators (":", "=", blanks) skipped, up to the next
// tag or line end. Empty when the caption is not on the page.
QString valueAfter(const QString& page, const QString& caption);

// "Outside Humidity", "Dew Point", "Barometer", "Average Wind Speed" values, the later ones
// each added behind " : ". Empty when none of the four captions is on the page.
QString summaryLine(const QString& page);

// What the line shows when there is no address, or the page could not be fetched.
inline const QString NoAddressText = QStringLiteral("Weather: no address set");
QString failedText(const QString& reason);
} // namespace Weather
