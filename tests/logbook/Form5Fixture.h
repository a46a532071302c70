#pragma once
// The logbook window on a real database file in a temporary folder (also the current folder,
// where Kestrel.txt and earth.kml go), shown on the offscreen platform, found by objectName.
#include "EntryTestDb.h"
#include "mapexport/MapViewer.h"
#include "ui/logbook/Form5.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>
#include <QTest>

#include <memory>

class Form5Fixture {
public:
    // `band`: setting 31, the band button switched on at opening.
    explicit Form5Fixture(int band = 21, const QList<Row>& contacts = {})
    {
        db.station.settings.setInt16(Setting::LogbookNumber, qint16(band));
        if (!contacts.isEmpty())
            db.add(contacts);
        form = std::make_unique<Form5>(db.station);
        form->setMapViewer(&viewer);
        form->show();
        active = QTest::qWaitForWindowActive(form.get());
    }

    template <typename T> T* child(const char* name) const
    {
        T* w = form->findChild<T*>(QLatin1String(name));
        EXPECT_NE(w, nullptr) << name;
        return w;
    }
    QLineEdit* edit(const char* name) const { return child<QLineEdit>(name); }
    QString text(const char* name) const
    {
        if (auto* e = form->findChild<QLineEdit*>(QLatin1String(name)))
            return e->text();
        return child<QLabel>(name)->text();
    }
    // The texts of several boxes or labels, in the order named.
    QStringList texts(std::initializer_list<const char*> names) const
    {
        QStringList out;
        for (const char* name : names)
            out << text(name);
        return out;
    }
    void click(const char* name) const { QTest::mouseClick(child<QAbstractButton>(name), Qt::LeftButton); }
    QString focused() const
    {
        return QApplication::focusWidget() ? QApplication::focusWidget()->objectName() : QString();
    }
    // Types into a box that has the focus first.
    void type(const char* name, const QString& text) const
    {
        QLineEdit* e = edit(name);
        e->setFocus();
        e->clear();
        QTest::keyClicks(e, text);
    }
    void key(Qt::Key k) const { QTest::keyClick(QApplication::focusWidget(), k); }
    bool waitIdle() const
    {
        return QTest::qWaitFor([this] { return !form->isBusy(); }, 30000);
    }
    int logCount() const { return int(db.rows({ "ID" }).size()); }

    EntryTestDb db;
    RecordingMapViewer viewer;
    std::unique_ptr<Form5> form;
    bool active = false;
};
