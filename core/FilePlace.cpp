#include "core/FilePlace.h"

#include <QDir>
#include <QFileInfo>

QString FilePlace(const QString& path)
{
    const QFileInfo info(path);
    return QStringLiteral("%1 in %2").arg(info.fileName(), QDir::toNativeSeparators(info.absolutePath()));
}
