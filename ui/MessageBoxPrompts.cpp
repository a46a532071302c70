#include "ui/MessageBoxPrompts.h"

#include <QApplication>
#include <QMessageBox>

void MessageBoxPrompts::information(const QString& text)
{
    QMessageBox::information(parent_, QApplication::applicationName(), text);
}

bool MessageBoxPrompts::question(const QString& text)
{
    return QMessageBox::question(parent_, QApplication::applicationName(), text, QMessageBox::Yes | QMessageBox::No)
        == QMessageBox::Yes;
}
