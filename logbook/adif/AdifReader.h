#pragma once
// Reads an ADIF file (.adi): an optional header ended by <EOH>, then records of fields
// "<NAME:length[:type]>value" ended by <EOR>. Names are taken without case; values are UTF-8
// (Latin-1 when they are not valid UTF-8). The length counts bytes; a length that counts the
// characters of UTF-8 text (as some loggers write) is taken as such where the bytes would end
// inside a character or before text other than blanks and the characters end cleanly, and
// the field is named in the record's notes. A record with a damaged
// field is reported with the line it starts on and the reason, and reading goes on with the
// next record, so one bad record never costs the good ones.
#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>

#include <cstdint>
#include <utility>
#include <vector>

// A record's fields by upper-case name, in file order; a name given twice keeps its last value.
// A record has a dozen or two fields, looked up by name some forty times as it is mapped: a
// list compared length first costs a fraction of hashing every name.
class AdifFields {
public:
    struct Field {
        QString name;
        QString value;
        bool operator==(const Field&) const = default;
    };
    void insert(const QString& name, const QString& value);
    QString value(const QString& name) const;
    bool contains(const QString& name) const { return indexOf(name) >= 0; }
    bool isEmpty() const { return fields_.empty(); }
    qsizetype size() const { return qsizetype(fields_.size()); }
    auto begin() const { return fields_.cbegin(); }
    auto end() const { return fields_.cend(); }
    bool operator==(const AdifFields&) const = default;

private:
    // One of 64 bits for a name's length and first letter.
    static std::uint64_t mark(const QString& name);
    qsizetype indexOf(const QString& name) const;
    std::vector<Field> fields_;
    std::uint64_t marks_ = 0; // the marks of the names in fields_
};

struct AdifRecord {
    int line = 0; // line of the record's first field, from 1
    AdifFields fields;
    QString error; // why the record is damaged; empty for a good one
    QStringList notes; // fields read in a way worth telling ("the length of NAME counts characters")

    QString value(const QString& name) const { return fields.value(name); }
    bool has(const QString& name) const { return fields.contains(name); }
};

class AdifReader {
public:
    explicit AdifReader(QByteArray data);

    // The next record; false at the end of the data.
    bool next(AdifRecord& record);

    qint64 position() const { return pos_; }
    qint64 size() const { return data_.size(); }
    // The header's fields (ADIF_VER, PROGRAMID, ...).
    const QHash<QString, QString>& header() const { return header_; }

private:
    enum class Tag { Field, EndOfRecord, EndOfHeader, Damaged, None };
    struct Parsed {
        Tag tag = Tag::None;
        QString name;
        QString value;
        QString error;
        QString note;
        int line = 0;
        bool junk = false; // text other than blanks before the tag
    };
    Parsed parseTag();
    void advanceTo(qint64 pos);
    void skipHeader();
    bool hasHeaderEnd() const;
    // True when a value ending at `end` is followed by blanks and a tag or the end of the data.
    bool endsCleanly(qint64 end) const;
    // Where `characters` UTF-8 characters from `from` end.
    qint64 characterEnd(qint64 from, qint64 characters) const;
    // The upper-case name of a tag: every record repeats the same few, so each spelling is
    // made into a QString once and shared after that.
    QString fieldName(QByteArrayView spelled);

    const QByteArray data_; // read only: never detached from a caller that keeps the bytes
    qint64 pos_ = 0;
    int line_ = 1;
    QHash<QString, QString> header_;
    static constexpr std::size_t kMaxNames = 128; // a file of ever new names stays cheap to search
    std::vector<std::pair<QByteArray, QString>> names_;
};
