#pragma once
// The cluster terminal's text as nodes really send it: valid UTF-8 is decoded and any other
// byte read as Latin-1; ANSI escape sequences (colours, cursor moves) and other control
// characters are not shown; a backspace removes the character before the caret; CR LF, LF CR,
// CR and LF each end one line.
// Bounded for a window that runs for days: the last maxLines lines, each at most
// maxLineLength characters (longer ones are broken). A view mirrors it through takeUpdate().
#include <QByteArrayView>
#include <QString>
#include <QStringList>
#include <deque>

class TerminalText {
public:
    explicit TerminalText(int maxLines = 3000, int maxLineLength = 1000);

    void feed(QByteArrayView bytes);
    // Ends the open line when it holds text, then adds `text` as a line of its own.
    void appendNotice(const QString& text);
    void clear();

    // Every kept line, the open (last, unfinished) line included.
    QStringList lines() const;
    // The last, unfinished line (a prompt waits there).
    const QString& openLine() const { return open_; }
    int lineCount() const { return static_cast<int>(finished_.size()) + 1; }
    int maxLines() const { return maxLines_; }
    int maxLineLength() const { return maxLineLength_; }

    // Lines ended by CR or LF since the last call, for the spot parser. Lines broken for
    // length and lines cut by a notice are left out: they are never whole spots.
    QStringList takeEndedLines();

    // What changed since the last call. Unless `reset`, a view replaces its last line with
    // `finished` followed by `open`; with `reset` its whole text becomes lines().
    struct Update {
        bool changed = false;
        bool reset = false;
        QStringList finished;
        QString open;
    };
    Update takeUpdate();

private:
    enum class Escape { None, Start, Csi, Osc, OscEsc };

    void endLine(bool whole);
    // Decodes bytes that are all text; an unfinished UTF-8 sequence at the end of what has
    // arrived waits for the next feed when `atEnd`.
    void appendRun(const char* begin, const char* end, bool atEnd);
    void appendText(QStringView text);
    void skipEscape(unsigned char c);

    int maxLines_;
    int maxLineLength_;
    std::deque<QString> finished_;
    QString open_;
    char pairsWith_ = 0; // the LF after a line-ending CR (or CR after LF) ends no second line
    Escape escape_ = Escape::None;
    QByteArray unfinished_; // the start of a UTF-8 sequence cut by the read
    bool openBroken_ = false; // the open line continues one broken for length or cut by a notice
    QStringList ended_;
    QStringList pending_;
    bool changed_ = false;
    bool reset_ = false;
};
