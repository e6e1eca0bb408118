#include "kelprocess.h"
#include "tempcatalogue.h"
#include "testmain.h"

#include <catalogue/catalogue.h>
#include <kelglobals.h>
#include <kelgraphic.h>
#include <localdevice.h>
#include <panel/deviceroutes.h>
#include <panel/formloader.h>
#include <panel/plotfeed.h>
#include <simulator/ptyline.h>
#include <simulator/simulator.h>

#include <QDateTime>
#include <QPainter>
#include <QSignalSpy>

namespace
{

constexpr int GapMs = 20;

const char *const Rules = "device climate id 7\n"
                          "set 0 = 21\n"
                          "set 2 = 45\n"
                          "on A1 %id 01\n"
                          "reply A2 %id %0 %2\n"
                          "on A1 %id 02\n"
                          "reply A3 %id %5\n";

/// A form with two devices and a plot of \a variables.
QByteArray formText(const QStringList &variables, const QString &path = QString())
{
    QByteArray strings;
    for (const QString &variable : variables)
        strings += "<string>" + variable.toHtmlEscaped().toUtf8() + "</string>";
    QByteArray devices;
    for (const char *name : {"climate", "other"})
        devices +=
            "<item><widget class='LocalDevice' name='" + QByteArray(name) +
            "'><property name='currentID'><number>5</number></property><property name='deviceSendPath'><string>" +
            path.toUtf8() + "</string></property><property name='deviceReadPath'><string>" +
            (qstrcmp(name, "climate") == 0 ? path.toUtf8() : QByteArray()) + "</string></property></widget></item>";
    return "<ui version='4.0'><class>P</class><widget class='QWidget' name='P'><layout class='QVBoxLayout'>"
           "<item><widget class='KelGraphic' name='plot'><property name='variables'><stringlist>" +
           strings + "</stringlist></property></widget></item>" + devices + "</layout></widget></ui>";
}

/// Whether \a plot paints its progress icon now.
bool showsIcon(KelGraphic &plot)
{
    QImage picture(plot.canvas()->size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    const QImage empty = picture;
    QPainter painter(&picture);
    Q_EMIT plot.graphicPaintEvent(&painter);
    painter.end();
    return picture != empty;
}

} // namespace

/// What a panel's devices answer, on its plots.
class tst_PlotFeed : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void sourceText_data();
    void sourceText();
    void formSetsTheVariables();
    void answersBecomePoints();
    void valuesOfOthersAreNotShown();
    void iconTurnsUntilAllHaveCome();
    void emptyPlotShowsThePresent();
    void plotThatWasStartedAnewIsFedAgain();
    void plotWithoutVariablesStaysAsItIs();
    void variablesThatCannotBeFedAreNamed();
    void windowItselfMayBeThePlot();
    void panelNamesThemAndGoesOn();

private:
    QString writeForm(const QByteArray &text) const;

    /// Lets \a device of \a form hear \a message, as if it came from the line.
    static void hear(const LoadedForm &form, const char *device, const char *message)
    {
        form.window->findChild<LocalDevice *>(QLatin1String(device))
            ->dataReceived(QByteArray::fromHex(message), QString());
    }
    static KelGraphic &plotOf(const LoadedForm &form) { return *form.window->findChild<KelGraphic *>(); }

    TempCatalogue m_catalogue;
};

void tst_PlotFeed::initTestCase()
{
    m_catalogue.addVendor(1, QStringLiteral("Acme"));
    m_catalogue.addDevice(3, QStringLiteral("Climate"), 1);
    m_catalogue.addCurrent(5, 3, QStringLiteral("Hall"), 7);
    m_catalogue.addCommand(1, 3, QStringLiteral("A1 %id 01"));
    m_catalogue.addAnswer(1, 3, QStringLiteral("A2 %id %0 %2"));
    m_catalogue.addAnswer(2, 3, QStringLiteral("A3 %id %5"));
    openCatalogue(m_catalogue.path());
}

QString tst_PlotFeed::writeForm(const QByteArray &text) const
{
    m_catalogue.writeFile(QStringLiteral("x.ui"), text);
    return m_catalogue.filePath(QStringLiteral("x.ui"));
}

void tst_PlotFeed::sourceText_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("device");
    QTest::addColumn<int>("argument");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *name, const char *text, const char *device, int argument, const char *error) {
        QTest::newRow(name) << QString::fromLatin1(text) << QString::fromLatin1(device) << argument
                            << QString::fromLatin1(error);
    };
    row("device and number", "climate.0", "climate", 0, "");
    row("more than one digit", "climate.12", "climate", 12, "");
    row("the last dot splits", "hall.climate.3", "hall.climate", 3, "");
    row("no dot", "climate", "", -1, "it is not DEVICE.NUMBER");
    row("no device", ".3", "", -1, "it is not DEVICE.NUMBER");
    row("nothing", "", "", -1, "it is not DEVICE.NUMBER");
    row("no number", "climate.", "", -1, "\"\" is no argument number");
    row("a word", "climate.temperature", "", -1, "\"temperature\" is no argument number");
    row("below zero", "climate.-1", "", -1, "\"-1\" is no argument number");
    row("with a plus", "climate.+1", "", -1, "\"+1\" is no argument number");
    row("with a blank", "climate. 1", "", -1, "\" 1\" is no argument number");
    row("hexadecimal", "climate.0x1", "", -1, "\"0x1\" is no argument number");
    row("too large", "climate.2147483648", "", -1, "\"2147483648\" is no argument number");
}

void tst_PlotFeed::sourceText()
{
    QFETCH(QString, text);
    QFETCH(QString, device);
    QFETCH(int, argument);
    QFETCH(QString, error);

    const PlotSource source = PlotSource::fromText(text);
    QCOMPARE(source.device, device);
    QCOMPARE(source.argument, argument);
    QCOMPARE(source.error, error);
}

void tst_PlotFeed::formSetsTheVariables()
{
    const LoadedForm form = loadForm(
        writeForm(formText({QStringLiteral("climate.0 = Temperature"), QStringLiteral("climate.2=Humidity")})));
    const QStringList expected = {QStringLiteral("climate.0=Temperature"), QStringLiteral("climate.2=Humidity")};
    QCOMPARE(plotOf(form).variables(), expected);
    QCOMPARE(plotOf(form).graphic(1).name, QStringLiteral("Humidity"));
}

void tst_PlotFeed::answersBecomePoints()
{
    m_catalogue.writeFile(QStringLiteral("x.rules"), Rules);
    const Simulator simulator(Simulator::readRules(m_catalogue.filePath(QStringLiteral("x.rules"))),
                              std::make_unique<PtyLine>(), GapMs, TrafficLog(QStringLiteral("device")));
    const LoadedForm form =
        loadForm(writeForm(formText({QStringLiteral("climate.2=Humidity"), QStringLiteral("climate.0=Temperature")},
                                    QStringLiteral("gser://0:0:0:%1:115200:8:N:1").arg(simulator.lineName()))));
    QCOMPARE(feedPlots(*form.window), QStringList());
    DeviceRoutes routes(Kel::connection, QStringLiteral("x.ui"));
    routes.open(*form.window);
    form.window->show();
    KelGraphic &plot = plotOf(form);
    auto *climate = form.window->findChild<LocalDevice *>(QStringLiteral("climate"));

    const double before = double(QDateTime::currentMSecsSinceEpoch()) / 1000.0;
    climate->sendCommand(1);
    QTRY_COMPARE(plot.pointsCount(0), 1);
    climate->sendCommand(1);
    QTRY_COMPARE(plot.pointsCount(0), 2);
    const double after = double(QDateTime::currentMSecsSinceEpoch()) / 1000.0;

    QCOMPARE(plot.graphicData(0).at(0).y(), 45.0);
    QCOMPARE(plot.pointsCount(1), 2);
    QCOMPARE(plot.graphicData(1).at(1).y(), 21.0);
    for (int curve = 0; curve < 2; ++curve) {
        for (const QPointF &point : plot.graphicData(curve)) {
            QVERIFY2(point.x() >= before - 0.001 && point.x() <= after + 0.001,
                     qPrintable(QString::number(point.x(), 'f')));
        }
    }
    QVERIFY(plot.isTimeAxis());
    QVERIFY(plot.graphicData(0).at(0).x() < plot.graphicData(0).at(1).x());
}

void tst_PlotFeed::valuesOfOthersAreNotShown()
{
    const LoadedForm form = loadForm(writeForm(formText({QStringLiteral("climate.2=Humidity")})));
    QCOMPARE(feedPlots(*form.window), QStringList());
    hear(form, "other", "a2071537");
    hear(form, "climate", "a30763");
    QCOMPARE(plotOf(form).pointsCount(0), 0);

    hear(form, "climate", "a2071537");
    QCOMPARE(plotOf(form).pointsCount(0), 1);
    QCOMPARE(plotOf(form).graphicData(0).at(0).y(), 55.0);
}

void tst_PlotFeed::iconTurnsUntilAllHaveCome()
{
    const LoadedForm form =
        loadForm(writeForm(formText({QStringLiteral("climate.0=Temperature"), QStringLiteral("climate.5=Load")})));
    form.window->show();
    KelGraphic &plot = plotOf(form);
    QVERIFY(!showsIcon(plot));
    feedPlots(*form.window);
    QVERIFY(showsIcon(plot));

    hear(form, "climate", "a2071537");
    hear(form, "climate", "a2071637");
    QVERIFY(showsIcon(plot));
    hear(form, "climate", "a30763");
    QVERIFY(!showsIcon(plot));
    hear(form, "climate", "a2071637");
    QVERIFY(!showsIcon(plot));
}

void tst_PlotFeed::emptyPlotShowsThePresent()
{
    const LoadedForm form = loadForm(writeForm(formText({QStringLiteral("climate.0=Temperature")})));
    form.window->show();
    KelGraphic &plot = plotOf(form);
    const double before = double(QDateTime::currentMSecsSinceEpoch()) / 1000.0 - 0.001;
    feedPlots(*form.window);
    const double start = plot.visibleRange(Graphic::XAxis).first;
    QVERIFY2(start >= before && start < before + 60.0, qPrintable(QString::number(start, 'f')));

    // From the first point on the range follows the points.
    QVERIFY(plot.isFitted());
    hear(form, "climate", "a2071537");
    plot.addPoint(start - 3600.0, 20.0, 0);
    QVERIFY(plot.visibleRange(Graphic::XAxis).first <= start - 3600.0);
}

void tst_PlotFeed::plotThatWasStartedAnewIsFedAgain()
{
    const LoadedForm form = loadForm(writeForm(formText({QStringLiteral("climate.0=Temperature")})));
    form.window->show();
    KelGraphic &plot = plotOf(form);
    feedPlots(*form.window);
    hear(form, "climate", "a2071537");
    plot.reset();
    QVERIFY(showsIcon(plot));
    QCOMPARE(plot.pointsCount(0), 0);
    hear(form, "climate", "a2071637");
    QVERIFY(!showsIcon(plot));
    QCOMPARE(plot.pointsCount(0), 1);
}

void tst_PlotFeed::plotWithoutVariablesStaysAsItIs()
{
    QWidget window;
    KelGraphic plot(&window);
    plot.setGraphicsCount(1, true);
    plot.addPoint(1.0, 2.0, 0);
    QCOMPARE(feedPlots(window), QStringList());
    QCOMPARE(plot.pointsCount(0), 1);
}

void tst_PlotFeed::variablesThatCannotBeFedAreNamed()
{
    const LoadedForm form = loadForm(writeForm(formText(
        {QStringLiteral("climate.0=Temperature"), QStringLiteral("attic.0=Attic"), QStringLiteral("climate.x=Word"),
         QStringLiteral("Plain"), QStringLiteral("plot.0=No device"), QStringLiteral("climate.0=Twice")})));
    const QStringList expected = {
        QStringLiteral("plot: variable \"attic.0=Attic\": there is no device \"attic\""),
        QStringLiteral("plot: variable \"climate.x=Word\": \"x\" is no argument number"),
        QStringLiteral("plot: variable \"Plain=Plain\": it is not DEVICE.NUMBER"),
        QStringLiteral("plot: variable \"plot.0=No device\": there is no device \"plot\""),
        QStringLiteral("plot: variable \"climate.0=Twice\": it stands there twice, so the progress icon never stops"),
    };
    QCOMPARE(feedPlots(*form.window), expected);

    // The others are fed.
    hear(form, "climate", "a2071537");
    QCOMPARE(plotOf(form).pointsCount(0), 1);
    QCOMPARE(plotOf(form).pointsCount(2), 0);
    QCOMPARE(plotOf(form).pointsCount(5), 1);
}

void tst_PlotFeed::windowItselfMayBeThePlot()
{
    KelGraphic plot;
    plot.setVariables({QStringLiteral("climate.0=Temperature")});
    LocalDevice device(&plot);
    device.setObjectName(QStringLiteral("climate"));
    device.setCurrentID(5);
    QCOMPARE(feedPlots(plot), QStringList());
    device.dataReceived(QByteArray::fromHex("a2071537"), QString());
    QCOMPARE(plot.pointsCount(0), 1);
}

void tst_PlotFeed::panelNamesThemAndGoesOn()
{
    const QString path = writeForm(formText({QStringLiteral("attic.0=Attic"), QStringLiteral("climate.0=T")}));
    const QString picture = m_catalogue.filePath(QStringLiteral("panel.png"));
    const KelRun run = runKel({QStringLiteral("panel"), path, QStringLiteral("--db=") + m_catalogue.path(),
                               QStringLiteral("--screenshot"), picture});
    QCOMPARE(run.exitCode, 0);
    QCOMPARE(run.errors,
             "kel: " + path.toLocal8Bit() + ": plot: variable \"attic.0=Attic\": there is no device \"attic\"\n");
    QVERIFY(!QImage(picture).isNull());
}

KEL_TEST_MAIN(tst_PlotFeed)
#include "tst_plotfeed.moc"
