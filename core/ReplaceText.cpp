#include "core/ReplaceText.h"

QString ReplaceText(const QString& text, const QString& find, const QString& replacement)
{
    if (find.isEmpty())
        return text;
    QString result = text;
    // A replacement that contains what it replaces would be rescanned for ever: one pass only.
    if (replacement.contains(find))
        return result.replace(find, replacement);
    qsizetype pos = result.indexOf(find);
    while (pos >= 0) {
        result.replace(pos, find.size(), replacement);
        // Nothing before pos matched; a new match must overlap the replaced part or follow it.
        pos = result.indexOf(find, std::max<qsizetype>(0, pos - find.size() + 1));
    }
    return result;
}
