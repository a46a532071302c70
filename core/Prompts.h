#pragma once
// The way every service talks to the operator: an information box, or a Yes/No question.
// The application shows message boxes; tests use RecordingPrompts and read the exact texts.
#include <QList>
#include <QString>
#include <QStringList>

class Prompts {
public:
    virtual ~Prompts() = default;
    virtual void information(const QString& text) = 0;
    // True when the operator answers Yes.
    virtual bool question(const QString& text) = 0;
    // The program is ending: a box open now goes away as if answered No.
    virtual void dismiss() { }
};

// Records every text shown; answers questions from a queue, then with a default.
class RecordingPrompts : public Prompts {
public:
    void information(const QString& text) override { shown << text; }
    bool question(const QString& text) override
    {
        asked << text;
        return answers.isEmpty() ? defaultAnswer : answers.takeFirst();
    }
    void dismiss() override { ++dismissed; }

    QStringList shown;
    QStringList asked;
    QList<bool> answers;
    bool defaultAnswer = true;
    int dismissed = 0;
};
