#pragma once
// A pseudo-terminal pair standing in for a serial device: the master side is ours (the device),
// the slave path is what the program under test opens as its port. Raw mode, non-blocking
// master; closing the master makes the device vanish from under whoever holds the slave.
#include <QByteArray>
#include <QString>

class PtyPair {
public:
    // Opens the pair at once; check isOpen() and errorText().
    PtyPair();
    ~PtyPair();
    PtyPair(const PtyPair&) = delete;
    PtyPair& operator=(const PtyPair&) = delete;

    bool isOpen() const { return master_ >= 0; }
    QString errorText() const { return error_; }
    // The device's end (non-blocking); -1 once closed.
    int masterFd() const { return master_; }
    // The slave side held open by the pair itself (for raw reference measurements).
    int slaveFd() const { return slave_; }
    // The path a serial port opens, e.g. "/dev/pts/5".
    QString slavePath() const { return slavePath_; }

    // Bytes written by the slave side so far, without waiting.
    QByteArray readAvailable();
    // Waits until `count` bytes have arrived or the time is up; returns what arrived (maybe
    // fewer). While waiting, pending Qt events of this thread run, so a serial port on the same
    // thread keeps moving its bytes.
    QByteArray readExactly(int count, int timeoutMs = 2000);
    // Waits until the bytes read end with `end` or the time is up; returns everything read.
    QByteArray readUntil(const QByteArray& end, int timeoutMs = 2000);
    // Collects everything that arrives during the given time.
    QByteArray readFor(int ms);

    // Writes every byte towards the slave, waiting for room at most timeoutMs. True when all
    // went out.
    bool write(const QByteArray& bytes, int timeoutMs = 2000);

    // Bytes written to the slave that nobody has read yet.
    int pendingForSlave() const;
    // Drops those bytes (a receiver nobody listens to loses its old output).
    void dropPendingForSlave();

    // Closes both ends: the slave path disappears and its holder sees the device vanish.
    void closeMaster();

private:
    template <typename Done> QByteArray readWhile(int timeoutMs, Done done);

    int master_ = -1;
    int slave_ = -1; // held open so the master never sees a hang-up between the program's opens
    QString slavePath_;
    QString error_;
};
