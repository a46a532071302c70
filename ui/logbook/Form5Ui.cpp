#include "ui/logbook/Form5Ui.h"

#include "logbook/entry/BandTable.h"
#include "ui/cluster/UpperCaseValidator.h"
#include "ui/widgets/OptionGroup.h"

#include <QButtonGroup>
#include <QCheckBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPushButton>
#include <QRadioButton>
#include <QTableView>
#include <QVBoxLayout>

namespace {

template <typename W> W* named(W* w, const char* name)
{
    w->setObjectName(QLatin1String(name));
    return w;
}

QLabel* label(const char* name, const QString& text, QWidget* parent)
{
    return named(new QLabel(text, parent), name);
}

QPushButton* button(const char* name, const QString& text, QWidget* parent)
{
    auto* b = named(new QPushButton(text, parent), name);
    b->setAutoDefault(false);
    return b;
}

} // namespace

QList<QLineEdit*> Form5Ui::entryBoxes() const
{
    return { DA, GM, Ca, Gr, Rss, Rr, Ba, mo, Na, Co, Qs, Pr };
}

void Form5Ui::setupUi(QWidget* window)
{
    window->setObjectName(QStringLiteral("form5"));
    window->setWindowTitle(QStringLiteral("Logbook"));
    auto* outer = new QVBoxLayout(window);
    outer->setContentsMargins(0, 0, 0, 0);
    content = named(new QWidget(window), "content");
    outer->addWidget(content);
    auto* root = new QVBoxLayout(content);
    root->setSpacing(6);

    // Own station, statistics, band-change time.
    auto* top = new QHBoxLayout;
    Callsign = label("Callsign", QString(), content);
    MyGrid = label("MyGrid", QString(), content);
    for (QLabel* l : { Callsign, MyGrid }) {
        l->setMinimumWidth(80);
        l->setFrameShape(QFrame::Panel);
        l->setFrameShadow(QFrame::Sunken);
        QFont f = l->font();
        f.setBold(true);
        l->setFont(f);
    }
    top->addWidget(new QLabel(QStringLiteral("Station:"), content));
    top->addWidget(Callsign);
    top->addWidget(MyGrid);
    top->addSpacing(16);
    Sqw = label("Sqw", QString(), content);
    SQc = label("SQc", QString(), content);
    dxw = label("dxw", QString(), content);
    DXc = label("DXc", QString(), content);
    const std::pair<QString, QLabel*> counts[] = { { QStringLiteral("Squares wkd"), Sqw },
        { QStringLiteral("cfm"), SQc }, { QStringLiteral("DXCC wkd"), dxw }, { QStringLiteral("cfm"), DXc } };
    for (const auto& [text, l] : counts) {
        top->addWidget(new QLabel(text + QLatin1Char(':'), content));
        l->setMinimumWidth(36);
        top->addWidget(l);
    }
    top->addStretch(1);
    Label1 = label("Label1", QString(), content);
    top->addWidget(new QLabel(QStringLiteral("Band change:"), content));
    top->addWidget(Label1);
    root->addLayout(top);

    // Band buttons, two rows.
    auto* bands = named(new QGroupBox(QStringLiteral("Band"), content), "OptBand");
    auto* bandGrid = new QGridLayout(bands);
    bandGrid->setContentsMargins(6, 4, 6, 4);
    OptBand = new QButtonGroup(window);
    for (int i = 0; i < BandTable::Count; ++i) {
        auto* b = new QRadioButton(BandTable::caption(i), bands);
        b->setObjectName(QStringLiteral("OptBand%1").arg(i));
        b->setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed); // only the caption is clickable
        OptBand->addButton(b, i);
        bandButtons << b;
        bandGrid->addWidget(b, i / 11, i % 11);
    }
    root->addWidget(bands);

    // Entry line: captions above the boxes.
    auto* entry = named(new QGroupBox(QStringLiteral("QSO"), content), "entryLine");
    auto* eg = new QGridLayout(entry);
    eg->setHorizontalSpacing(4);
    const std::pair<const char*, const char*> boxes[] = { { "DA", "Date" }, { "GM", "Time" },
        { "Ca", "Call" }, { "Gr", "Locator" }, { "Rss", "RST s" }, { "Rr", "RST r" }, { "Ba", "Band" },
        { "mo", "Mode" }, { "Na", "Name" }, { "Co", "Comment" }, { "Qs", "QSL" }, { "Pr", "Prop" } };
    const int widths[] = { 80, 64, 90, 70, 40, 40, 56, 44, 80, 0, 30, 30 };
    QList<QLineEdit*> made;
    for (int i = 0; i < int(std::size(boxes)); ++i) {
        eg->addWidget(new QLabel(QLatin1String(boxes[i].second), entry), 0, i);
        auto* e = named(new QLineEdit(entry), boxes[i].first);
        if (widths[i] > 0)
            e->setFixedWidth(widths[i]);
        eg->addWidget(e, 1, i);
        made << e;
    }
    eg->setColumnStretch(9, 1);
    DA = made[0], GM = made[1], Ca = made[2], Gr = made[3], Rss = made[4], Rr = made[5];
    Ba = made[6], mo = made[7], Na = made[8], Co = made[9], Qs = made[10], Pr = made[11];
    // The callsign and the locator are upper case as they are typed.
    Ca->setValidator(new UpperCaseValidator(Ca));
    Gr->setValidator(new UpperCaseValidator(Gr));
    auto* entryRow = new QHBoxLayout;
    entryRow->addWidget(new QLabel(QStringLiteral("DXCC: "), entry));
    cou = label("cou", QString(), entry);
    cou->setMinimumWidth(160);
    entryRow->addWidget(cou);
    entryRow->addWidget(new QLabel(QStringLiteral("Nr s"), entry));
    Ns = named(new QLineEdit(entry), "Ns");
    entryRow->addWidget(Ns);
    entryRow->addWidget(new QLabel(QStringLiteral("Nr r"), entry));
    Nr = named(new QLineEdit(entry), "Nr");
    entryRow->addWidget(Nr);
    for (QLineEdit* e : { Ns, Nr }) {
        e->setFixedWidth(44);
        e->setToolTip(QStringLiteral("Contest serial number (optional; counts per band)"));
    }
    qrbInfo = label("qrbInfo", QString(), entry);
    entryRow->addWidget(qrbInfo, 1);
    wsjtxStatus = label("wsjtxStatus", QString(), entry);
    entryRow->addWidget(wsjtxStatus);
    addnew = button("addnew", QStringLiteral("&New QSO"), entry);
    Save = button("Save", QStringLiteral("&Save"), entry);
    Save->setAutoDefault(true); // Enter on the focused button saves
    entryRow->addWidget(addnew);
    entryRow->addWidget(Save);
    eg->addLayout(entryRow, 2, 0, 1, int(std::size(boxes)));
    auto* lists = new QHBoxLayout;
    workedBefore = named(new QListWidget(entry), "workedBefore");
    checkPartial = named(new QListWidget(entry), "checkPartial");
    for (QListWidget* list : { workedBefore, checkPartial }) {
        list->setFocusPolicy(Qt::NoFocus); // the entry line's keys move between its boxes
        list->setMaximumHeight(80);
    }
    checkPartial->setFlow(QListView::LeftToRight);
    checkPartial->setWrapping(true);
    lists->addWidget(workedBefore, 1);
    lists->addWidget(checkPartial, 1);
    eg->addLayout(lists, 3, 0, 1, int(std::size(boxes)));
    root->addWidget(entry);

    // The log grid.
    gridCaption = label("DataGrid1Caption", QString(), content);
    root->addWidget(gridCaption);
    DataGrid1 = named(new QTableView(content), "DataGrid1");
    DataGrid1->setSelectionBehavior(QAbstractItemView::SelectRows);
    DataGrid1->setSelectionMode(QAbstractItemView::SingleSelection);
    DataGrid1->setEditTriggers(QAbstractItemView::NoEditTriggers);
    DataGrid1->setSortingEnabled(false); // header clicks sort in the database (see Form5)
    DataGrid1->horizontalHeader()->setSectionsClickable(true);
    DataGrid1->horizontalHeader()->setSortIndicatorShown(true);
    DataGrid1->horizontalHeader()->setMinimumSectionSize(1); // column 0 is 10 twips wide
    DataGrid1->verticalHeader()->setDefaultSectionSize(20);
    DataGrid1->verticalHeader()->setVisible(false);
    DataGrid1->setAlternatingRowColors(true);
    DataGrid1->setWordWrap(false);
    // The column widths are fixed in twips; a slightly smaller font and clipped (not elided)
    // text show as much of each value as they allow.
    DataGrid1->setTextElideMode(Qt::ElideNone);
    QFont gridFont = DataGrid1->font();
    gridFont.setPointSizeF(gridFont.pointSizeF() - 1.0);
    DataGrid1->setFont(gridFont);
    root->addWidget(DataGrid1, 1);

    // Search, map and file actions.
    auto* bottom = new QHBoxLayout;
    bottom->addWidget(new QLabel(QStringLiteral("Search:"), content));
    txtStr = named(new QLineEdit(content), "txtStr");
    txtStr->setFixedWidth(110);
    bottom->addWidget(txtStr);
    uSc_MultiOption1
        = new OptionGroup({ QStringLiteral("Call"), QStringLiteral("Locator") }, Qt::Horizontal, content);
    uSc_MultiOption1->setObjectName(QStringLiteral("uSc_MultiOption1"));
    uSc_MultiOption1->setValue(1);
    bottom->addWidget(uSc_MultiOption1);
    Search = button("Search", QStringLiteral("Searc&h"), content);
    bottom->addWidget(Search);
    bottom->addSpacing(12);
    GoogleEarth = button("GoogleEarth", QStringLiteral("Show Recordsets/Band on GoogleEarth"), content);
    bottom->addWidget(GoogleEarth);
    gridDEC = button("gridDEC", QStringLiteral("Complete map data"), content);
    gridDEC->setToolTip(
        QStringLiteral("Adds map data to imported contacts of this band that have a locator"));
    bottom->addWidget(gridDEC);
    squareMap = button("squareMap", QStringLiteral("S&quare map"), content);
    squareMap->setToolTip(QStringLiteral("Writes squares.kml: worked and confirmed squares per band"));
    bottom->addWidget(squareMap);
    bottom->addStretch(1);
    adifImport = button("adifImport", QStringLiteral("ADIF &import..."), content);
    adifExport = button("adifExport", QStringLiteral("ADIF &export..."), content);
    adifAllBands = named(new QCheckBox(QStringLiteral("all bands"), content), "adifAllBands");
    adifAllBands->setToolTip(QStringLiteral("Export every band instead of the band shown"));
    bottom->addWidget(adifImport);
    bottom->addWidget(adifExport);
    bottom->addWidget(adifAllBands);
    ediExport = button("ediExport", QStringLiteral("ED&I export..."), content);
    ediExport->setToolTip(QStringLiteral("Writes the band shown as an EDI contest file"));
    bottom->addWidget(ediExport);
    bottom->addSpacing(12);
    cmdExit = button("cmdExit", QStringLiteral("E&xit"), content);
    bottom->addWidget(cmdExit);
    root->addLayout(bottom);
}
