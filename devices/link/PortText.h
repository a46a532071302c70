#pragma once
// Where a port text points: a bare number n names COM port n (COMn on Windows, /dev/ttyS<n-1>
// on Linux), any other text is a device path taken as it stands.
#include <QString>

namespace PortText {

enum class Platform { Linux, Windows };

#ifdef Q_OS_WIN
constexpr Platform nativePlatform = Platform::Windows;
#else
constexpr Platform nativePlatform = Platform::Linux;
#endif

// True when the text (blanks ignored) is a bare number.
bool isNumber(const QString& portText);

// The device the port text names; empty for a number below 1 or an empty text.
QString devicePath(const QString& portText, Platform platform = nativePlatform);

// How messages name the port: the path, with the number the operator typed where it differs
// ("10 (/dev/ttyS9)").
QString displayName(const QString& portText, Platform platform = nativePlatform);

} // namespace PortText
