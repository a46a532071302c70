#pragma once
// The run counting behind SQNr/SQNQr (squares) and DXNr/DXNQr (DXCC entities): records
// arrive in key order and a new run starts where the key differs from the last one kept.
// Both keep their keys in lists of 100001 entries; passing that ends the count with an error.
#include <QString>

class RunCounter {
public:
    enum class Kind {
        Squares, // key: first 4 characters of grid; the first record is never compared, so it
                 // is counted twice and the label shows count - 1 (deliberate)
        Entities // key: first 8 characters of dxcc; every record compared, label shows count
    };
    static constexpr int kLastIndex = 100000;

    explicit RunCounter(Kind kind)
        : kind_(kind)
    {
    }

    // The key of the next record. True when it starts a new run (for squares: the record
    // that gets the outline). After an overflow nothing more is counted.
    bool add(const QString& column);

    bool overflowed() const { return overflowed_; }
    // The number the label shows.
    int labelValue() const { return kind_ == Kind::Squares ? count_ - 1 : count_; }
    // The key the last run started with (the pass-over square for squares).
    const QString& lastKey() const { return last_; }

private:
    Kind kind_;
    int count_ = 1;
    int position_ = 0;
    bool started_ = false;
    bool overflowed_ = false;
    QString last_;
};
