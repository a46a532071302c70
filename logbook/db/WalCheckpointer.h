#pragma once
// Copies a log's write-ahead journal into the file in the background while a long write
// action (an import) goes on committing, on a connection and thread of its own. Each request
// runs one passive checkpoint: it never waits for the writer nor holds it up, and the
// checkpoint the writer's close runs is then left with the last stretch only.
#include <QString>

#include <condition_variable>
#include <mutex>
#include <stop_token>
#include <thread>

class WalCheckpointer {
public:
    explicit WalCheckpointer(const QString& file);
    ~WalCheckpointer();

    // Asks for a checkpoint of what has been committed so far; requests coming while one
    // runs make one more.
    void request();

private:
    void run(std::stop_token stop);

    const QString file_;
    std::mutex mutex_;
    std::condition_variable_any wake_;
    bool wanted_ = false;
    std::jthread thread_;
};
