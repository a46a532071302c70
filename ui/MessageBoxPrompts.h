#pragma once
// Prompts shown as message boxes with the application's title.
#include "core/Prompts.h"

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

private:
    QWidget* parent_;
};
