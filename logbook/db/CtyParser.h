#pragma once
// Reads a country file in the widely used cty.dat format and turns it into dxccdata rows.
// Each entity has a header line (name, zones, continent, position, UTC offset, primary prefix)
// and a list of prefixes and "="-marked exact callsigns, ended by ";". Zone, position and
// continent overrides in brackets are stripped, as is the "*" that marks entities counted only
// for the WAE list (they keep their own rows and names).
#include <QList>
#include <QString>
#include <QStringList>

struct CtyEntity {
    QString name;
    QString primaryPrefix; // without the "*"
    QString continent;
    bool waeOnly = false; // the primary prefix carried a "*"
    QStringList prefixes;
    QStringList exactCalls;
};

struct DxccRow {
    QString pattern; // LIKE pattern: prefix + "%", or an exact callsign
    QString country;
    QString prefix; // the entity's primary prefix
};

class CtyParser {
public:
    // Entities in file order; a malformed record is skipped and named in `error` (if given).
    static QList<CtyEntity> parse(const QString& text, QString* error = nullptr);

    // Rows in lookup order: exact callsigns first, then prefixes, longer before shorter, so the
    // first row that matches a callsign is the most specific one. Exact callsigns that the
    // prefixes already give the same entity add nothing and are left out.
    static QList<DxccRow> toRows(const QList<CtyEntity>& entities);

    // The entity the rows give for a callsign (the reference the lookup must agree with):
    // the exact call, else the longest matching prefix; empty if none.
    static QString entityFor(const QList<CtyEntity>& entities, const QString& callsign);
    static QStringList entitiesFor(const QList<CtyEntity>& entities, const QStringList& callsigns);
};
