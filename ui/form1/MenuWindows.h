#pragma once
// The secondary windows behind the main window's menu: each is made once by the factory the
// program registered and shown again on every later call. A window nobody registered yet is
// an empty placeholder with its title.
#include <QHash>
#include <QPointer>
#include <QString>
#include <QWidget>

#include <functional>

class MenuWindows {
public:
    using Factory = std::function<QWidget*(QWidget* parent)>;

    explicit MenuWindows(QWidget* owner)
        : owner_(owner)
    {
    }

    void declare(const QString& name, const QString& title);
    void registerFactory(const QString& name, Factory factory);
    bool hasFactory(const QString& name) const;

    // The window, made if it does not exist yet; not shown.
    QWidget* ensure(const QString& name);
    // ensure() and show it in front.
    QWidget* show(const QString& name);
    // The window if it has been made, else nullptr.
    QWidget* instance(const QString& name) const;

    void closeAll();

private:
    struct Entry {
        QString title;
        Factory factory;
        QPointer<QWidget> window;
    };
    QWidget* placeholder(const QString& name, const QString& title) const;

    QWidget* owner_;
    QHash<QString, Entry> entries_;
};
