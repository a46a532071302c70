#pragma once
// Lets GoogleTest print a QString as text when an expectation fails.
#include <QString>

#include <ostream>

inline void PrintTo(const QString& s, std::ostream* os)
{
    *os << '"' << s.toStdString() << '"';
}
