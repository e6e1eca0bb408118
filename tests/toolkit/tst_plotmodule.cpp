#include "testmain.h"

#include <graphic.h>

#include <QFile>

/// What draws plots is a library of its own that only a program with a plot pays for.
class tst_PlotModule : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void comesWithTheFirstPlot();
};

static bool isLoaded(const char *library)
{
    QFile maps(QStringLiteral("/proc/self/maps"));
    return maps.open(QIODevice::ReadOnly) && maps.readAll().contains(library);
}

void tst_PlotModule::comesWithTheFirstPlot()
{
    QVERIFY(isLoaded("libKel_toolkit"));
    QVERIFY(!isLoaded("libKel_plot"));
    QVERIFY(!isLoaded("libqwt"));
    {
        Graphic plot;
        QVERIFY(plot.canvas());
        QVERIFY(isLoaded("libKel_plot"));
        QVERIFY(isLoaded("libqwt"));
    }
    const Graphic another; // the module stays
    QVERIFY(another.canvas());
}

KEL_TEST_MAIN(tst_PlotModule)
#include "tst_plotmodule.moc"
