#include "tests/support/TempDir.h"

#include <QDir>
#include <QFile>

TempDir::TempDir()
    : previous_(QDir::currentPath())
{
    QDir::setCurrent(dir_.path());
}

TempDir::~TempDir()
{
    QDir::setCurrent(previous_);
}

QByteArray TempDir::read(const QString& name) const
{
    QFile f(file(name));
    if (!f.open(QIODevice::ReadOnly))
        return {};
    return f.readAll();
}

void TempDir::write(const QString& name, const QByteArray& bytes) const
{
    QFile f(file(name));
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate))
        f.write(bytes);
}
