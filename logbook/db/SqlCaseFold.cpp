#include "logbook/db/SqlCaseFold.h"

#include <sqlite3.h>

namespace {

void casefold(sqlite3_context* context, int, sqlite3_value** argv)
{
    const unsigned char* text = sqlite3_value_text(argv[0]);
    if (!text)
        return; // NULL stays NULL
    const QByteArray folded
        = QString::fromUtf8(reinterpret_cast<const char*>(text), sqlite3_value_bytes(argv[0]))
              .toCaseFolded()
              .toUtf8();
    sqlite3_result_text(context, folded.constData(), int(folded.size()), SQLITE_TRANSIENT);
}

} // namespace

namespace SqlCaseFold {

bool install(sqlite3* handle)
{
    return sqlite3_create_function(
               handle, "casefold", 1, SQLITE_UTF8 | SQLITE_DETERMINISTIC, nullptr, casefold, nullptr, nullptr)
        == SQLITE_OK;
}

bool needsFolding(const QString& text)
{
    for (const QChar c : text) {
        if (c.unicode() >= 0x80)
            return true;
    }
    return false;
}

} // namespace SqlCaseFold
