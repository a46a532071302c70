#include "mapexport/KmlFile.h"

#include "mapexport/MapExportLog.h"

namespace {
constexpr qsizetype kBlock = 1 << 20;
}

KmlFile::KmlFile(const QString& path)
    : path_(path)
    , file_(path)
{
    // Never write in place: a half-written "earth.kml" is worse than the old one.
    file_.setDirectWriteFallback(false);
}

bool KmlFile::open()
{
    buffer_.clear();
    buffer_.reserve(kBlock + kBlock / 4);
    written_ = 0;
    failed_ = false;
    error_.clear();
    if (!file_.open(QIODevice::WriteOnly)) {
        error_ = file_.errorString();
        failed_ = true;
        qCWarning(lcMapExport) << "cannot create" << path_ << error_;
        return false;
    }
    return true;
}

void KmlFile::write(const QByteArray& bytes)
{
    buffer_.append(bytes);
    flushIfLarge();
}

void KmlFile::flushIfLarge()
{
    if (buffer_.size() >= kBlock)
        flush();
}

bool KmlFile::flush()
{
    if (failed_ || buffer_.isEmpty()) {
        buffer_.clear();
        return !failed_;
    }
    const qint64 n = file_.write(buffer_);
    if (n != buffer_.size()) {
        error_ = file_.errorString();
        failed_ = true;
        qCWarning(lcMapExport) << "write failed" << path_ << error_;
    } else {
        written_ += n;
    }
    buffer_.clear();
    return !failed_;
}

bool KmlFile::commit()
{
    if (!file_.isOpen())
        return false;
    if (!flush()) {
        file_.cancelWriting();
        file_.commit(); // discards the temporary file
        return false;
    }
    if (!file_.commit()) {
        error_ = file_.errorString();
        failed_ = true;
        qCWarning(lcMapExport) << "commit failed" << path_ << error_;
        return false;
    }
    return true;
}

void KmlFile::cancel()
{
    buffer_.clear();
    if (file_.isOpen()) {
        file_.cancelWriting();
        file_.commit();
    }
}
