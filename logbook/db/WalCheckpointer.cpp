#include "logbook/db/WalCheckpointer.h"

#include <QFile>

#include <sqlite3.h>

WalCheckpointer::WalCheckpointer(const QString& file)
    : file_(file)
    , thread_([this](std::stop_token stop) { run(stop); })
{
}

WalCheckpointer::~WalCheckpointer()
{
    thread_.request_stop();
    thread_.join(); // the writer's closing checkpoint must not meet this one
}

void WalCheckpointer::request()
{
    std::lock_guard lock(mutex_);
    wanted_ = true;
    wake_.notify_one();
}

void WalCheckpointer::run(std::stop_token stop)
{
    sqlite3* h = nullptr;
    while (true) {
        {
            std::unique_lock lock(mutex_);
            wake_.wait(lock, stop, [this] { return wanted_; });
            if (stop.stop_requested())
                break;
            wanted_ = false;
        }
        if (!h) {
            if (sqlite3_open_v2(QFile::encodeName(file_).constData(), &h, SQLITE_OPEN_READWRITE, nullptr)
                != SQLITE_OK)
                break;
            // A new connection learns that the file keeps a write-ahead journal when it first reads it.
            sqlite3_exec(h, "SELECT count(*) FROM sqlite_schema", nullptr, nullptr, nullptr);
        }
        // A busy journal (another checkpoint under way) only means this one is skipped.
        sqlite3_wal_checkpoint_v2(h, nullptr, SQLITE_CHECKPOINT_PASSIVE, nullptr, nullptr);
    }
    sqlite3_close_v2(h);
}
