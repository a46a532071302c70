#include "ui/form1/MenuWindows.h"

#include <QLabel>
#include <QVBoxLayout>

void MenuWindows::declare(const QString& name, const QString& title)
{
    entries_[name].title = title;
}

void MenuWindows::registerFactory(const QString& name, Factory factory)
{
    entries_[name].factory = std::move(factory);
}

bool MenuWindows::hasFactory(const QString& name) const
{
    const auto it = entries_.constFind(name);
    return it != entries_.cend() && it->factory;
}

QWidget* MenuWindows::ensure(const QString& name)
{
    Entry& e = entries_[name];
    if (e.window)
        return e.window;
    QWidget* w = e.factory ? e.factory(owner_) : placeholder(name, e.title);
    if (!w)
        return nullptr;
    // a child window of the main window: it goes when the program ends
    if (!w->parentWidget())
        w->setParent(owner_);
    w->setWindowFlag(Qt::Window, true);
    if (w->windowTitle().isEmpty())
        w->setWindowTitle(e.title);
    e.window = w;
    return w;
}

QWidget* MenuWindows::show(const QString& name)
{
    QWidget* w = ensure(name);
    if (!w)
        return nullptr;
    w->show();
    w->raise();
    w->activateWindow();
    return w;
}

QWidget* MenuWindows::instance(const QString& name) const
{
    const auto it = entries_.constFind(name);
    return it == entries_.cend() ? nullptr : it->window.data();
}

void MenuWindows::closeAll()
{
    for (Entry& e : entries_) {
        if (e.window)
            e.window->close();
    }
}

QWidget* MenuWindows::placeholder(const QString& name, const QString& title) const
{
    auto* w = new QWidget(owner_, Qt::Window);
    w->setObjectName(name + QStringLiteral("Placeholder"));
    w->setWindowTitle(title);
    auto* label = new QLabel(QStringLiteral("%1 is not part of this build yet.").arg(title), w);
    label->setAlignment(Qt::AlignCenter);
    label->setEnabled(false);
    auto* box = new QVBoxLayout(w);
    box->addWidget(label);
    w->resize(420, 180);
    return w;
}
