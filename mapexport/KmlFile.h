#pragma once
// The output file of a map export: single-byte text collected in memory and written to a
// temporary file beside the target, which replaces "earth.kml" only on commit. A cancelled
// or failed export leaves the previous file whole.
#include <QByteArray>
#include <QSaveFile>
#include <QString>

class KmlFile {
public:
    explicit KmlFile(const QString& path);
    KmlFile(const KmlFile&) = delete;
    KmlFile& operator=(const KmlFile&) = delete;

    // Creates the temporary file; false (with errorString()) when that is not possible.
    bool open();
    bool isOpen() const { return file_.isOpen(); }

    // Appends bytes; they reach the disk in large blocks.
    void write(const QByteArray& bytes);
    // The buffer templates append to directly (no copy); flushed when it grows large.
    QByteArray& buffer() { return buffer_; }
    void flushIfLarge();

    // Writes what is left and puts the file in place; false when anything failed.
    bool commit();
    // Drops everything written; the previous file stays as it was.
    void cancel();

    QString path() const { return path_; }
    QString errorString() const { return error_; }
    qint64 bytesWritten() const { return written_ + buffer_.size(); }

private:
    bool flush();

    QString path_;
    QSaveFile file_;
    QByteArray buffer_;
    QString error_;
    qint64 written_ = 0;
    bool failed_ = false;
};
