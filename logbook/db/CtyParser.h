#pragma once
// Reads the country file in its one-line-per-entity form (cty.csv) and turns it into dxccdata
// rows. A line holds the primary prefix, the name, the ADIF entity number, continent, CQ and
// ITU zone, position, UTC offset and the prefixes and "="-marked exact callsigns, ended by
// ";". A prefix or call may carry its own zones and continent: (CQ) [ITU] {continent}.
// Entities counted only for the WAE list ("*" before the primary prefix) count for the DXCC
// entity with the same number: IT9 gives Italy, 248.
#include <QList>
#include <QString>
#include <QStringList>

struct CtyPlace {
    int dxccNr = 0;
    int cqZone = 0;
    int ituZone = 0;
    QString continent;
    bool operator==(const CtyPlace&) const = default;
};

struct CtyItem {
    QString text; // prefix or exact callsign, upper case, without "=" and overrides
    CtyPlace place; // the entity's values with the item's overrides
};

struct CtyEntity {
    QString name; // as the file spells it ("Sicily")
    QString dxccName; // the DXCC entity's name ("Italy")
    QString primaryPrefix; // without the "*"
    bool waeOnly = false;
    CtyPlace place;
    QList<CtyItem> prefixes;
    QList<CtyItem> exactCalls;
};

struct DxccRow {
    QString pattern; // LIKE pattern: prefix + "%", or an exact callsign
    QString country; // DXCC entity name
    QString prefix; // the entity's primary prefix
    CtyPlace place;
};

class CtyParser {
public:
    // Entities in file order; a malformed line is skipped and named in `error` (if given).
    static QList<CtyEntity> parse(const QString& csv, QString* error = nullptr);

    // Rows in lookup order: exact callsigns first, then prefixes, longer before shorter, so the
    // first row that matches a callsign is the most specific one. Exact callsigns that the
    // prefixes already give the same values add nothing and are left out.
    static QList<DxccRow> toRows(const QList<CtyEntity>& entities);

    // The DXCC name the rows give for a callsign (the reference the lookup must agree with):
    // the exact call, else the longest matching prefix; empty if none.
    static QString entityFor(const QList<CtyEntity>& entities, const QString& callsign);
    static QStringList entitiesFor(const QList<CtyEntity>& entities, const QStringList& callsigns);
};
