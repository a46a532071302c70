#pragma once
#include <QString>

// Replaces the first occurrence of `find`, then looks at the whole result again, until none
// is left: ",,," with ",," -> ", ," gives ", , ,", which a single left-to-right pass would not.
QString ReplaceText(const QString& text, const QString& find, const QString& replacement);
