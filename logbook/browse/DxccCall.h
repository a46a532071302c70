#pragma once
// A callsign as heard, read the way the country file's rules read it, so that the DXCC lookup
// finds the entity the station is in: place-less suffixes (/P /M /QRP /A /B /LH ...) are
// dropped, /MM and /AM (maritime and aeronautical mobile) are in no entity, a single-digit
// suffix replaces the call area (UA3ABC/9 -> UA9ABC), and of two parts the prefix or suffix
// designator decides (F/DL1ABC -> F, DL1ABC/EA8 -> EA8). A call the country file lists as a
// whole (=VK3FY/9) is kept as it is.
#include <QString>

#include <functional>

namespace DxccCall {
// The text to look up, upper case; empty when the call is in no entity or empty.
// `isExactCall` tells whether the country data lists a text as a whole call.
QString normalised(const QString& callsign, const std::function<bool(const QString&)>& isExactCall = {});
} // namespace DxccCall
