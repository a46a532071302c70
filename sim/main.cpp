// kestrel-sim: the simulated station Kestrel can be run and tested against (see SimOptions).
#include "sim/SimOptions.h"
#include "sim/SimStation.h"

#include <QCoreApplication>

#include <cstdio>

int main(int argc, char** argv)
{
    QCoreApplication app(argc, argv);
    QString problem;
    const std::optional<SimOptions> options = SimOptions::parse(app.arguments().mid(1), &problem);
    if (!options) {
        std::fprintf(stderr, "kestrel-sim: %s\n\n%s", qPrintable(problem), qPrintable(SimOptions::usage()));
        return 2;
    }
    if (options->help) {
        std::fputs(qPrintable(SimOptions::usage()), stdout);
        return 0;
    }
    SimStation station(*options);
    if (!station.start())
        return 1;
    return app.exec();
}
