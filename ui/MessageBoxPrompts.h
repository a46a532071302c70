#pragma once
// Prompts shown as message boxes with the application's title. Each text is also logged to
// kestrel.ui.prompts, so that a run without a screen can be read back.
#include "core/Prompts.h"

#include <QList>
#include <QPointer>

class QMessageBox;
class QWidget;

class MessageBoxPrompts : public Prompts {
public:
    explicit MessageBoxPrompts(QWidget* parent = nullptr)
        : parent_(parent)
    {
    }
    void setParent(QWidget* parent) { parent_ = parent; }
    void information(const QString& text) override;
    bool question(const QString& text) override;
    void dismiss() override;

private:
    int run(QMessageBox& box);

    QWidget* parent_;
    QList<QPointer<QMessageBox>> open_; // a box opened inside another's wait stacks on it
};
