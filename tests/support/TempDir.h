#pragma once
// A temporary working directory for a test: created empty, made the current directory
// while the object lives, and removed afterwards, so no test touches the user's files.
#include <QString>
#include <QTemporaryDir>

class TempDir {
public:
    TempDir();
    ~TempDir();
    TempDir(const TempDir&) = delete;
    TempDir& operator=(const TempDir&) = delete;

    QString path() const { return dir_.path(); }
    QString file(const QString& name) const { return dir_.filePath(name); }

    QByteArray read(const QString& name) const;
    void write(const QString& name, const QByteArray& bytes) const;

private:
    QTemporaryDir dir_;
    QString previous_;
};
