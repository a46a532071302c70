#pragma once
// One contact as the ADIF import and export see it: the logtab columns they read and write,
// by the column names of the log.
#include <QString>
#include <QStringList>
#include <QVariant>

struct AdifContact {
    QString date; // yyyy-MM-dd as stored
    QString gmt;
    QString callsign;
    QString grid;
    QString rsts;
    QString rstr;
    QString band;
    QString mode;
    QString nam;
    QString comment;
    QString qsl;
    QString prop;
    QString dxcc;
    QVariant qrb; // km; invalid when unknown
    QVariant qtf; // degrees; invalid when unknown
    QString qslman;
    // Further columns of the log that ADIF has fields for.
    QString freq;
    QString txPwr;
    QString antenna;
    QString myCall;
    QString myGrid;
    QString contest;
    QString nrSent;
    QString nrRcvd;
    QString qslSent;
    QString qslRcvd;
    QString cont;
    QString cqZone;
    QString ituZone;
    QString remarks;
    // Map texts (written for contacts with a locator).
    QString geData;
    QString geGridXY;
    // The ADIF entity number, and the fields of a record without a column of their own, as
    // ADIF text ("<STATE:2>NY <IOTA:6>EU-005"), by name.
    QString dxccNr;
    QString adifExtra;

    // One column's value as values() gives it, by its position in columns(), without a QVariant
    // (the import binds 34 of them a record into SQLite): NULL, a text, an integer (CQZone,
    // ITUZone, DxccNr) or a number (QRB, QTF); an empty AdifExtra is NULL.
    struct Cell {
        enum class Kind { Null, Text, Integer, Number } kind = Kind::Null;
        const QString* text = nullptr; // lives as long as the contact
        int integer = 0;
        double number = 0;
    };

    // The column names, in the order of values().
    static const QStringList& columns();
    QVariantList values() const;
    Cell cell(int column) const;
    // Fills the contact from values in the order of columns().
    void setValue(int column, const QVariant& value);
};
