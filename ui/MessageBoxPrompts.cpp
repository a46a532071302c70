#include "ui/MessageBoxPrompts.h"

#include <QApplication>
#include <QLoggingCategory>
#include <QMessageBox>

Q_LOGGING_CATEGORY(lcBoxes, "kestrel.ui.prompts")

int MessageBoxPrompts::run(QMessageBox& box)
{
    qCInfo(lcBoxes).noquote() << "box:" << box.text();
    open_ << &box;
    const int answer = box.exec();
    open_.removeAll(&box);
    return answer;
}

void MessageBoxPrompts::information(const QString& text)
{
    QMessageBox box(
        QMessageBox::Information, QApplication::applicationName(), text, QMessageBox::Ok, parent_);
    run(box);
}

bool MessageBoxPrompts::question(const QString& text)
{
    QMessageBox box(QMessageBox::Question, QApplication::applicationName(), text,
        QMessageBox::Yes | QMessageBox::No, parent_);
    return run(box) == QMessageBox::Yes;
}

void MessageBoxPrompts::dismiss()
{
    for (const QPointer<QMessageBox>& box : std::as_const(open_))
        if (box)
            box->done(QMessageBox::No);
}
