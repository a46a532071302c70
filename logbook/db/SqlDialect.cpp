#include "logbook/db/SqlDialect.h"

#include <QStringList>

#include <algorithm>

namespace {

struct Token {
    enum Kind { Space, Word, Name, Literal, Other };
    Kind kind;
    QString text;
};
using Tokens = QList<Token>;

bool isWordChar(QChar c)
{
    return c.isLetterOrNumber() || c == u'_' || c == u'$';
}

bool isOperatorChar(QChar c)
{
    return QLatin1String("<>=!|").contains(c);
}

// Blanks (and -- comments), words, "names", 'literals' ('' inside is a quote), operators and
// single characters. Joined again they give the text back unchanged.
Tokens tokenize(const QString& s)
{
    Tokens out;
    const qsizetype n = s.size();
    qsizetype i = 0;
    while (i < n) {
        const qsizetype start = i;
        const QChar c = s[i];
        Token::Kind kind = Token::Other;
        if (c.isSpace()) {
            kind = Token::Space;
            while (i < n && s[i].isSpace())
                ++i;
        } else if (c == u'-' && i + 1 < n && s[i + 1] == u'-') {
            kind = Token::Space;
            while (i < n && s[i] != u'\n')
                ++i;
        } else if (c == u'\'' || c == u'"') {
            kind = c == u'\'' ? Token::Literal : Token::Name;
            ++i;
            while (i < n && !(s[i] == c && (i + 1 == n || s[i + 1] != c)))
                i += s[i] == c ? 2 : 1;
            i = qMin(i + 1, n); // an unterminated literal runs to the end
        } else if (isWordChar(c)) {
            kind = Token::Word;
            while (i < n && isWordChar(s[i]))
                ++i;
        } else if (isOperatorChar(c)) {
            while (i < n && isOperatorChar(s[i]))
                ++i;
        } else {
            ++i;
        }
        out.append({ kind, s.mid(start, i - start) });
    }
    return out;
}

QString join(const Tokens& t, qsizetype from, qsizetype to)
{
    QString out;
    for (qsizetype i = from; i < to; ++i)
        out += t[i].text;
    return out;
}

bool is(const Tokens& t, qsizetype i, const char* word)
{
    return i >= 0 && i < t.size() && t[i].kind == Token::Word
        && t[i].text.compare(QLatin1String(word), Qt::CaseInsensitive) == 0;
}

bool isAny(const Tokens& t, qsizetype i, std::initializer_list<const char*> words)
{
    return std::any_of(words.begin(), words.end(), [&](const char* w) { return is(t, i, w); });
}

bool isChar(const Tokens& t, qsizetype i, char c)
{
    return i >= 0 && i < t.size() && t[i].kind == Token::Other && t[i].text == QLatin1Char(c);
}

// The next and previous token that is not blank; size() or -1 when there is none.
qsizetype next(const Tokens& t, qsizetype i)
{
    do
        ++i;
    while (i < t.size() && t[i].kind == Token::Space);
    return i;
}

qsizetype prev(const Tokens& t, qsizetype i)
{
    do
        --i;
    while (i >= 0 && t[i].kind == Token::Space);
    return i;
}

// The ')' that closes the '(' at open; size() when it is missing.
qsizetype closing(const Tokens& t, qsizetype open)
{
    int depth = 0;
    for (qsizetype i = open; i < t.size(); ++i) {
        if (isChar(t, i, '('))
            ++depth;
        else if (isChar(t, i, ')') && --depth == 0)
            return i;
    }
    return t.size();
}

// The first token of the operand that ends at last: a value, a (qualified) name or a call.
qsizetype operandStart(const Tokens& t, qsizetype last)
{
    qsizetype first = last;
    if (isChar(t, last, ')')) {
        for (int depth = 0; first >= 0; --first) {
            depth += isChar(t, first, ')') - isChar(t, first, '(');
            if (depth == 0)
                break;
        }
        if (first > 0 && t[first - 1].kind == Token::Word)
            --first;
    }
    while (isChar(t, first - 1, '.') && first >= 2
        && (t[first - 2].kind == Token::Word || t[first - 2].kind == Token::Name))
        first -= 2;
    return qMax<qsizetype>(first, 0);
}

bool isOperand(const Tokens& t, qsizetype i)
{
    return i >= 0 && (t[i].kind != Token::Other || isChar(t, i, '?') || isChar(t, i, ')'));
}

// lower(<operand ending at last>); returns the index of the new closing parenthesis.
qsizetype wrapLower(Tokens& t, qsizetype last)
{
    const qsizetype first = operandStart(t, last);
    t.insert(last + 1, { Token::Other, QStringLiteral(")") });
    t.insert(first, { Token::Other, QStringLiteral("(") });
    t.insert(first, { Token::Word, QStringLiteral("lower") });
    return last + 3;
}

const QString TableInfo = QStringLiteral(
    "SELECT row_number() OVER (ORDER BY ordinal_position NULLS FIRST) - 1 AS cid, column_name AS name, "
    "CASE WHEN data_type IN ('bigint', 'integer') THEN 'INTEGER' "
    "WHEN data_type = 'double precision' THEN 'REAL' "
    "WHEN data_type = 'character varying' THEN 'text(250)' "
    "ELSE upper(data_type) END AS type, "
    "CASE WHEN is_nullable = 'NO' THEN 1 ELSE 0 END AS notnull, column_default AS dflt_value, "
    "coalesce((SELECT k.ordinal_position FROM information_schema.key_column_usage AS k "
    "JOIN information_schema.table_constraints AS p USING (constraint_schema, constraint_name) "
    "WHERE p.constraint_type = 'PRIMARY KEY' AND k.table_schema = c.table_schema "
    "AND k.table_name = c.table_name AND k.column_name = c.column_name), 0) AS pk "
    "FROM information_schema.columns AS c WHERE table_schema = current_schema() AND table_name = '%1' "
    "ORDER BY ordinal_position NULLS FIRST");

// The schema version lives in a one-row table: PostgreSQL has no user_version. Table info
// keeps SQLite's columns and type spellings, which the schema checks compare; deliberate: an
// unbounded varchar is reported as text(250), the one length the schema declares.
QString pragma(const Tokens& t, qsizetype at)
{
    const qsizetype name = next(t, at);
    const qsizetype after = next(t, name);
    if (is(t, name, "user_version")) {
        if (after < t.size() && t[after].text == QLatin1String("="))
            return QStringLiteral("UPDATE kestrel_schema SET version = ")
                + join(t, after + 1, t.size()).trimmed();
        return QStringLiteral("SELECT version FROM kestrel_schema");
    }
    const qsizetype arg = next(t, after);
    if (is(t, name, "table_info") && isChar(t, after, '(') && arg < t.size()) {
        QString table = t[arg].text;
        if (t[arg].kind != Token::Word)
            table = table.mid(1, table.size() - 2);
        return TableInfo.arg(table.toLower().replace(QLatin1Char('\''), QLatin1String("''")));
    }
    if (is(t, name, "integrity_check"))
        return QStringLiteral("SELECT 'ok'");
    return QString(); // tuning of SQLite's own file: nothing to do on a server
}

void ddlTypes(Tokens& t)
{
    for (qsizetype i = 0; i < t.size(); ++i) {
        if (is(t, i, "REAL"))
            t[i].text = QStringLiteral("DOUBLE PRECISION");
        else if (is(t, i, "text") && isChar(t, next(t, i), '(')) {
            // SQLite never enforces the length; a server would refuse a long map text.
            t[i].text = QStringLiteral("varchar");
            t.remove(i + 1, closing(t, next(t, i)) - i);
        }
        else if (is(t, i, "INTEGER") && is(t, next(t, i), "PRIMARY") && is(t, next(t, next(t, i)), "KEY"))
            t[i].text = QStringLiteral("BIGSERIAL");
    }
}

// A column's NOCASE goes (searches use ILIKE); an index or a comparison folds with lower().
void collateNocase(Tokens& t, bool column)
{
    for (qsizetype i = 0; i < t.size(); ++i) {
        if (!is(t, i, "COLLATE") || !is(t, next(t, i), "NOCASE"))
            continue;
        qsizetype operand = prev(t, i);
        t.remove(operand + 1, next(t, i) - operand);
        i = operand;
        if (column || !isOperand(t, operand))
            continue;
        i = wrapLower(t, operand);
        const qsizetype op = prev(t, operandStart(t, i));
        const bool comparison = op >= 0 && t[op].kind == Token::Other
            && QStringList { "=", "==", "<>", "!=", "<", ">", "<=", ">=" }.contains(t[op].text);
        if (comparison && isOperand(t, prev(t, op))) {
            wrapLower(t, prev(t, op));
            i += 3; // lower ( ) went in before
        }
    }
}

void words(Tokens& t)
{
    for (qsizetype i = 0; i < t.size(); ++i) {
        Token& k = t[i];
        if (k.kind == Token::Name)
            k.text = k.text.toLower(); // the schema is made unquoted, so PostgreSQL folded its names
        else if (is(t, i, "LIKE"))
            k.text = QStringLiteral("ILIKE");
        else if (is(t, i, "rowid") && !isChar(t, next(t, i), '('))
            k.text = QStringLiteral("ID"); // every table's ID INTEGER PRIMARY KEY is SQLite's rowid
        else if (is(t, i, "instr") && isChar(t, next(t, i), '('))
            k.text = QStringLiteral("strpos");
    }
}

// A GLOB pattern as an anchored regular expression: * and ? become .* and ., a [set] stays.
QString globRegex(const QString& literal)
{
    const QString g = literal.mid(1, literal.size() - 2);
    QString out = QStringLiteral("'^");
    for (qsizetype k = 0; k < g.size(); ++k) {
        if (g[k] == u'[') {
            qsizetype from = k + 1;
            from += g.mid(from, 1) == u"^";
            from += g.mid(from, 1) == u"]"; // a ] first in the set is one of its characters
            const qsizetype end = g.indexOf(u']', from);
            if (end > 0) {
                out += g.mid(k, end + 1 - k);
                k = end;
                continue;
            }
        }
        if (g[k] == u'*')
            out += QStringLiteral(".*");
        else if (g[k] == u'?')
            out += u'.';
        else if (QLatin1String("\\.^$|()[]+{}").contains(g[k]))
            out += QStringLiteral("\\") + g[k];
        else
            out += g[k];
    }
    return out + QStringLiteral("$'");
}

// GLOB is SQLite's; a pattern given as a literal becomes a POSIX match (case kept, as GLOB does).
void glob(Tokens& t)
{
    for (qsizetype i = 0; i < t.size(); ++i) {
        const qsizetype pattern = next(t, i);
        if (!is(t, i, "GLOB") || pattern == t.size() || t[pattern].kind != Token::Literal
            || t[pattern].text.size() < 2 || !t[pattern].text.endsWith(u'\''))
            continue;
        t[pattern].text = globRegex(t[pattern].text);
        t[i] = { Token::Other, QStringLiteral("~") };
        const qsizetype before = prev(t, i);
        if (is(t, before, "NOT")) {
            t[before] = { Token::Other, QStringLiteral("!~") };
            t.remove(before + 1, i - before);
            i = before;
        }
    }
}

// substr(x, -n) counts from the end in SQLite; PostgreSQL's takes the whole text.
void substrFromEnd(Tokens& t)
{
    for (qsizetype i = 0; i < t.size(); ++i) {
        const qsizetype open = next(t, i);
        if (!is(t, i, "substr") || !isChar(t, open, '('))
            continue;
        const qsizetype close = closing(t, open);
        const qsizetype count = prev(t, close);
        const qsizetype minus = prev(t, count);
        const qsizetype comma = prev(t, minus);
        bool number = false;
        t[count].text.toUInt(&number);
        if (close == t.size() || t[count].kind != Token::Word || !number || !isChar(t, minus, '-')
            || !isChar(t, comma, ','))
            continue;
        bool oneComma = true;
        for (qsizetype j = open + 1, depth = 0; j < comma; ++j) {
            depth += isChar(t, j, '(') - isChar(t, j, ')');
            oneComma = oneComma && !(depth == 0 && isChar(t, j, ','));
        }
        if (!oneComma)
            continue;
        t[i].text = QStringLiteral("right");
        t.remove(minus, count - minus);
    }
}

// SQLite's CAST to INTEGER takes a text's leading integer and 0 where there is none; PostgreSQL's
// refuses such a text. NULL stays NULL. Inner casts first, so they end up inside outer ones.
void castInteger(Tokens& t)
{
    for (qsizetype i = t.size() - 1; i >= 0; --i) {
        const qsizetype open = next(t, i);
        if (!is(t, i, "CAST") || !isChar(t, open, '('))
            continue;
        const qsizetype close = closing(t, open);
        const qsizetype as = prev(t, prev(t, close));
        if (close == t.size() || !is(t, prev(t, close), "INTEGER") || !is(t, as, "AS"))
            continue;
        const QString expr = join(t, next(t, open), prev(t, as) + 1);
        const Tokens cast
            = tokenize(QStringLiteral("CASE WHEN (%1) IS NOT NULL THEN coalesce(CAST(substring("
                                      "CAST(%1 AS text) from '^\\s*([-+]?[0-9]+)') AS BIGINT), 0) END")
                           .arg(expr));
        t.remove(i, close + 1 - i);
        for (qsizetype k = 0; k < cast.size(); ++k)
            t.insert(i + k, cast[k]);
    }
}

// PostgreSQL wants a name for every table in FROM, subqueries included.
void derivedTableAlias(Tokens& t)
{
    for (qsizetype i = 0; i < t.size(); ++i) {
        const qsizetype open = next(t, i);
        if (!is(t, i, "FROM") || !isChar(t, open, '(') || !is(t, next(t, open), "SELECT"))
            continue;
        const qsizetype close = closing(t, open);
        const qsizetype after = next(t, close);
        if (close < t.size()
            && (after == t.size() || isChar(t, after, ')') || isChar(t, after, ';') || isChar(t, after, ',')
                || isAny(t, after,
                    { "WHERE", "ORDER", "GROUP", "HAVING", "LIMIT", "OFFSET", "UNION", "EXCEPT", "INTERSECT",
                        "JOIN", "INNER", "LEFT", "RIGHT", "FULL", "CROSS", "NATURAL", "WINDOW" })))
            t.insert(close + 1, { Token::Other, QStringLiteral(" AS sub") });
    }
}

// The columns declared COLLATE NOCASE: SQLite sorts them without case.
bool nocaseColumn(const Tokens& t, qsizetype i)
{
    return t[i].kind == Token::Word && isAny(t, i, { "Callsign", "Grid", "Band", "beacon" });
}

// SQLite reads a table in row-id order, and the log relies on it: the DXCC lookup takes the first
// matching row, lists keep their order after a change. PostgreSQL promises no order, so a plain
// read of one of the log's tables (no order, grouping, limit or function of its own) is ordered
// by ID.
void storedOrder(Tokens& t)
{
    for (qsizetype i = 0; i < t.size(); ++i) {
        if (!is(t, i, "SELECT"))
            continue;
        qsizetype j = next(t, i);
        while (j < t.size() && !is(t, j, "FROM")
            && (t[j].kind == Token::Word || t[j].kind == Token::Name || isChar(t, j, '*') || isChar(t, j, ',')
                || isChar(t, j, '.'))
            && !is(t, j, "DISTINCT"))
            j = next(t, j);
        const qsizetype table = next(t, j);
        if (!is(t, j, "FROM") || !isAny(t, table, { "logtab", "PNT_Beacon", "dxccdata" }))
            continue;
        // The end of this SELECT: its closing parenthesis, a ';' or the end of the text.
        qsizetype end = table;
        bool ordered = false;
        for (int depth = 0; end < t.size(); ++end) {
            if (depth == 0 && (isChar(t, end, ')') || isChar(t, end, ';')))
                break;
            depth += isChar(t, end, '(') - isChar(t, end, ')');
            ordered = ordered
                || (depth == 0 && isAny(t, end, { "ORDER", "GROUP", "LIMIT", "OFFSET", "UNION", "EXCEPT" }));
        }
        // After a literal left open the text would only grow into it.
        const qsizetype last = prev(t, end);
        const bool openLiteral = t[last].kind == Token::Literal
            && (t[last].text.size() < 2 || !t[last].text.endsWith(QLatin1Char('\'')));
        if (!ordered && !openLiteral)
            t.insert(end, { Token::Other, QStringLiteral(" ORDER BY ID NULLS FIRST") });
    }
}

// SQLite puts NULL first going up and last going down, PostgreSQL the other way round; a
// NOCASE column sorts without case.
void orderByNulls(Tokens& t)
{
    for (qsizetype i = 0; i < t.size(); ++i) {
        if (!is(t, i, "ORDER") || !is(t, next(t, i), "BY"))
            continue;
        QList<qsizetype> keyEnds; // the last token of each key without a NULLS of its own
        QList<qsizetype> nocaseKeys; // keys that are just a NOCASE column's name
        qsizetype first = -1;
        qsizetype last = -1;
        bool nulls = false;
        auto endKey = [&] {
            if (last >= 0 && !nulls)
                keyEnds.append(last);
            if (first >= 0 && nocaseColumn(t, first)
                && (first == last || (next(t, first) == last && isAny(t, last, { "ASC", "DESC" }))))
                nocaseKeys.append(first);
            first = last = -1;
            nulls = false;
        };
        int depth = 0;
        for (qsizetype j = next(t, next(t, i)); j < t.size(); j = next(t, j)) {
            if (depth == 0
                && (isChar(t, j, ')') || isChar(t, j, ';') || isAny(t, j, { "LIMIT", "OFFSET", "UNION" })))
                break;
            if (depth == 0 && isChar(t, j, ',')) {
                endKey();
                continue;
            }
            depth += isChar(t, j, '(') - isChar(t, j, ')');
            nulls = nulls || (depth == 0 && is(t, j, "NULLS"));
            if (first < 0)
                first = j;
            last = j;
        }
        endKey();
        for (const qsizetype k : nocaseKeys)
            t[k].text = QStringLiteral("lower(%1)").arg(t[k].text);
        for (auto k = keyEnds.crbegin(); k != keyEnds.crend(); ++k)
            t.insert(*k + 1,
                { Token::Other,
                    is(t, *k, "DESC") ? QStringLiteral(" NULLS LAST") : QStringLiteral(" NULLS FIRST") });
    }
}

} // namespace

namespace SqlDialect {

const QList<Translation>& postgresTable()
{
    static const QByteArray tableInfoExample = TableInfo.arg(QLatin1String("pnt_beacon")).toUtf8();
    static const QList<Translation> table {
        { "LIKE ignores case in SQLite, not in PostgreSQL",
            "SELECT * FROM logtab WHERE Band LIKE ? AND QSL not like 'q'",
            "SELECT * FROM logtab WHERE Band ILIKE ? AND QSL not ILIKE 'q' ORDER BY ID NULLS FIRST" },
        { "COLLATE NOCASE in a comparison: both sides folded",
            "SELECT 1 FROM dxccdata WHERE dxcccode = ? COLLATE NOCASE",
            "SELECT 1 FROM dxccdata WHERE lower(dxcccode) = lower(?) ORDER BY ID NULLS FIRST" },
        { "COLLATE NOCASE of a column: dropped, searches use ILIKE",
            "CREATE TABLE t (ID INTEGER PRIMARY KEY, Callsign TEXT COLLATE NOCASE, Band TEXT)",
            "CREATE TABLE t (ID BIGSERIAL PRIMARY KEY, Callsign TEXT, Band TEXT)" },
        { "COLLATE NOCASE in an index: an index on lower()",
            "CREATE INDEX IF NOT EXISTS logtab_qsl ON logtab (QSL COLLATE NOCASE)",
            "CREATE INDEX IF NOT EXISTS logtab_qsl ON logtab (lower(QSL))" },
        { "rowid is SQLite's; every table's ID INTEGER PRIMARY KEY is that rowid",
            "SELECT logtab.rowid AS kestrel_rowid, * FROM \"logtab\" WHERE \"logtab\".rowid = ?",
            "SELECT logtab.ID AS kestrel_rowid, * FROM \"logtab\" WHERE \"logtab\".ID = ?" },
        { "INTEGER PRIMARY KEY numbers new rows in SQLite; BIGSERIAL does so in PostgreSQL",
            "CREATE TABLE dxccdata (ID INTEGER PRIMARY KEY, DxccNr INTEGER)",
            "CREATE TABLE dxccdata (ID BIGSERIAL PRIMARY KEY, DxccNr INTEGER)" },
        { "REAL has 8 bytes in SQLite, 4 in PostgreSQL", "CREATE TABLE p (QRB REAL, QTF REAL)",
            "CREATE TABLE p (QRB DOUBLE PRECISION, QTF DOUBLE PRECISION)" },
        { "text(n) is no PostgreSQL type, and SQLite never enforces the length", "ALTER TABLE logtab ADD COLUMN GEdata text(250);",
            "ALTER TABLE logtab ADD COLUMN GEdata varchar;" },
        { "A subquery in FROM needs a name in PostgreSQL",
            "SELECT * FROM (SELECT * FROM logtab) WHERE  band like '2m'",
            "SELECT * FROM (SELECT * FROM logtab ORDER BY ID NULLS FIRST) AS sub WHERE  band ILIKE '2m'" },
        { "NULL sorts first going up in SQLite, last in PostgreSQL",
            "SELECT * FROM logtab ORDER BY date  desc , Grid, ID ASC",
            "SELECT * FROM logtab ORDER BY date  desc NULLS LAST , lower(Grid) NULLS FIRST, ID ASC NULLS FIRST" },
        { "A NOCASE column sorts without case in SQLite",
            "SELECT * FROM logtab WHERE QSL like 'T' ORDER BY callsign",
            "SELECT * FROM logtab WHERE QSL ILIKE 'T' ORDER BY lower(callsign) NULLS FIRST" },
        { "SQLite reads a table in row-id order; PostgreSQL promises none",
            "SELECT * FROM (SELECT beacon, qrg FROM PNT_beacon where beacon like 'DB0%') WHERE qrg <> ''",
            "SELECT * FROM (SELECT beacon, qrg FROM PNT_beacon where beacon ILIKE 'DB0%' ORDER BY ID NULLS FIRST) AS sub "
            "WHERE qrg <> ''" },
        { "BEGIN IMMEDIATE is SQLite's write lock; PostgreSQL locks rows itself", "BEGIN IMMEDIATE",
            "BEGIN" },
        { "CAST AS INTEGER: SQLite takes the leading digits, PostgreSQL fails on other text",
            "SELECT MAX(CAST(NrSent AS INTEGER)) FROM logtab",
            "SELECT MAX(CASE WHEN (NrSent) IS NOT NULL THEN coalesce(CAST(substring(CAST(NrSent AS text) "
            "from "
            "'^\\s*([-+]?[0-9]+)') AS BIGINT), 0) END) FROM logtab" },
        { "Quoted names keep their case in PostgreSQL; the schema's unquoted ones are lower case",
            "UPDATE \"PNT_Beacon\" SET \"GEdata\" = ? WHERE ID = ?",
            "UPDATE \"pnt_beacon\" SET \"gedata\" = ? WHERE ID = ?" },
        { "instr() is strpos() in PostgreSQL", "SELECT 1 FROM dxccdata WHERE instr(dxcccode, '%') = 0",
            "SELECT 1 FROM dxccdata WHERE strpos(dxcccode, '%') = 0 ORDER BY ID NULLS FIRST" },
        { "GLOB is SQLite's; a literal pattern becomes an anchored regular expression",
            "SELECT * FROM logtab WHERE NrSent GLOB '[0-9]*' AND Grid NOT GLOB 'J?6.*'",
            "SELECT * FROM logtab WHERE NrSent ~ '^[0-9].*$' AND Grid !~ '^J.6\\..*$' ORDER BY ID NULLS FIRST" },
        { "substr(x, -n) counts from the end in SQLite, not in PostgreSQL",
            "SELECT count(*) FROM dxccdata WHERE substr(\"dxcccode\", -1) = '*'",
            "SELECT count(*) FROM dxccdata WHERE right(\"dxcccode\", 1) = '*'" },
        { "The schema version: a one-row table instead of SQLite's file header", "PRAGMA user_version",
            "SELECT version FROM kestrel_schema" },
        { "Setting the schema version", "PRAGMA user_version = 2", "UPDATE kestrel_schema SET version = 2" },
        { "Columns of a table, as SQLite lists them", "PRAGMA table_info(PNT_Beacon)",
            tableInfoExample.constData() },
        { "The server checks its own storage", "PRAGMA integrity_check", "SELECT 'ok'" },
        { "Tuning of SQLite's file (synchronous, journal_mode, cache_size...): nothing to run",
            "PRAGMA journal_mode=WAL", "" },
    };
    return table;
}

QString toPostgres(const QString& sqliteText)
{
    Tokens t = tokenize(sqliteText);
    const qsizetype first = next(t, -1);
    if (is(t, first, "PRAGMA"))
        return pragma(t, first);
    if (is(t, first, "BEGIN") && isAny(t, next(t, first), { "IMMEDIATE", "DEFERRED", "EXCLUSIVE" }))
        t.remove(first + 1, next(t, first) - first);
    const bool ddl = isAny(t, first, { "CREATE", "ALTER" });
    const bool index = ddl && (is(t, next(t, first), "INDEX") || is(t, next(t, next(t, first)), "INDEX"));
    if (ddl)
        ddlTypes(t);
    collateNocase(t, ddl && !index);
    words(t);
    glob(t);
    substrFromEnd(t);
    castInteger(t);
    storedOrder(t);
    derivedTableAlias(t);
    orderByNulls(t);
    return join(t, 0, t.size());
}

} // namespace SqlDialect
