#pragma once
// The contact the concurrency tests save: 15.11.2026 12:34 on 144 in CW, a call of the test's.
#include "logbook/entry/EntryLine.h"

inline EntryLine positionContact(const QString& call)
{
    EntryLine l;
    l.DA = QStringLiteral("2026-11-15");
    l.GM = QStringLiteral("12:34");
    l.Ca = call;
    l.Ba = QStringLiteral("144");
    l.mo = QStringLiteral("CW");
    l.Rss = QStringLiteral("599");
    l.Rr = QStringLiteral("579");
    return l;
}
