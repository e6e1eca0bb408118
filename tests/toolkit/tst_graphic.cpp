#include "testmain.h"

#include <QMetaProperty>
#include <QSignalSpy>
#include <QToolButton>
#include <graphic.h>

#include <cmath>

/// The plot as its user calls it: settings and ranges.
class tst_Graphic : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void beginning();
    void buttonValues_data();
    void buttonValues();
    void visibleRange_data();
    void visibleRange();
    void rangeIsAnnounced();
    void fittedIsAnnounced();
    void positionsAndPoints();
    void precisionStep_data();
    void precisionStep();
    void curveWidth_data();
    void curveWidth();
    void switches_data();
    void switches();
    void toolBarShowsItsButtons_data();
    void toolBarShowsItsButtons();
    void readyOnlyWhenSeen();
    void fitsIntoSmallPlaces();
    void lowPlotKeepsItsLegend();
    void everythingBeforeItIsShown();
};

static const double Infinity = std::numeric_limits<double>::infinity();
static const double Nan = std::numeric_limits<double>::quiet_NaN();
using Range = QPair<double, double>;

void tst_Graphic::beginning()
{
    const Graphic plot;
    QCOMPARE(plot.graphicsCount(), 0);
    QCOMPARE(plot.historySize(), -1.0);
    QCOMPARE(plot.axisLabelPrecisionStep(), 0);
    QCOMPARE(plot.curveWidth(), 1.0);
    QVERIFY(plot.isFitted());
    QVERIFY(plot.gridVisible());
    QVERIFY(plot.legendVisible());
    QVERIFY(!plot.cursorVisible());
    QVERIFY(!plot.isPaused());
    QVERIFY(!plot.borderInputsVisible());
    QVERIFY(!plot.statusVisible());
    QVERIFY(!plot.isTimeAxis());
    QCOMPARE(plot.buttons(), Graphic::Buttons(0x2207));
    QVERIFY(plot.axisTitle(Graphic::XAxis).isEmpty());
    QVERIFY(plot.axisUnit(Graphic::YAxis).isEmpty());
    QVERIFY(plot.canvas());
    QVERIFY(plot.sizeHint().width() > plot.minimumSizeHint().width());
}

void tst_Graphic::buttonValues_data()
{
    QTest::addColumn<int>("button");
    QTest::addColumn<int>("value");

    QTest::newRow("fit") << int(Graphic::FitButton) << 0x1;
    QTest::newRow("grid") << int(Graphic::GridButton) << 0x2;
    QTest::newRow("cursor") << int(Graphic::CursorButton) << 0x4;
    QTest::newRow("save a picture") << int(Graphic::SavePictureButton) << 0x200;
    QTest::newRow("pause") << int(Graphic::PauseButton) << 0x2000;
}

void tst_Graphic::buttonValues()
{
    QFETCH(int, button);
    QFETCH(int, value);
    QCOMPARE(button, value);
    QVERIFY(0x2207 & value);
    QCOMPARE(Graphic::FitButton | Graphic::GridButton | Graphic::CursorButton | Graphic::SavePictureButton |
                 Graphic::PauseButton,
             Graphic::Buttons(0x2207));
}

void tst_Graphic::visibleRange_data()
{
    QTest::addColumn<double>("from");
    QTest::addColumn<double>("to");
    QTest::addColumn<Range>("range");
    QTest::addColumn<bool>("isFitted");

    QTest::newRow("in order") << 2.0 << 3.0 << Range(2, 3) << false;
    QTest::newRow("exchanged") << 3.0 << 2.0 << Range(2, 3) << false;
    QTest::newRow("from not a number") << Nan << 2.0 << Range(0, 9) << true;
    QTest::newRow("to infinite") << 2.0 << Infinity << Range(0, 9) << true;
}

void tst_Graphic::visibleRange()
{
    QFETCH(double, from);
    QFETCH(double, to);
    QFETCH(Range, range);
    QFETCH(bool, isFitted);
    Graphic plot;
    plot.setGraphicsCount(1, true);
    plot.setGraphicData({{0, 0}, {9, 84.9}}, 0);
    plot.setVisibleRange(Graphic::XAxis, from, to);
    QCOMPARE(plot.visibleRange(Graphic::XAxis), range);
    QCOMPARE(plot.isFitted(), isFitted);
    QCOMPARE(plot.visibleRange(Graphic::YAxis), Range(-20, 100)); // the other axis stays
    plot.setVisibleRange(Graphic::YAxis, 5.0, 5.0);
    QVERIFY(plot.visibleRange(Graphic::YAxis).first < 5.0 && plot.visibleRange(Graphic::YAxis).second > 5.0);
}

void tst_Graphic::rangeIsAnnounced()
{
    Graphic plot;
    plot.setGraphicsCount(1, true);
    plot.addPoint(0.0, 0.0);
    plot.visibleRange(Graphic::XAxis);
    QSignalSpy spy(&plot, &Graphic::visibleRangeChanged);
    plot.addPoint(1.0, 0.0);
    plot.visibleRange(Graphic::XAxis);
    QCOMPARE(spy.count(), 1);
    plot.addPoint(0.5, 0.0);
    plot.visibleRange(Graphic::XAxis);
    QCOMPARE(spy.count(), 1);
    plot.setVisibleRange(Graphic::YAxis, 0.0, 100.0);
    plot.visibleRange(Graphic::XAxis);
    QCOMPARE(spy.count(), 2);
}

void tst_Graphic::fittedIsAnnounced()
{
    Graphic plot;
    QSignalSpy spy(&plot, &Graphic::fittedChanged);
    plot.fit();
    QCOMPARE(spy.count(), 0);
    plot.setVisibleRange(Graphic::XAxis, 0.0, 2.0);
    QCOMPARE(spy.count(), 1);
    QCOMPARE(spy.last().first().toBool(), false);
    plot.setVisibleRange(Graphic::XAxis, 0.0, 3.0);
    QCOMPARE(spy.count(), 1);
    plot.fit();
    QCOMPARE(spy.count(), 2);
    QCOMPARE(spy.last().first().toBool(), true);
}

void tst_Graphic::positionsAndPoints()
{
    Graphic plot;
    plot.resize(600, 400);
    plot.setVisibleRange(Graphic::XAxis, 100.0, 200.0);
    plot.setVisibleRange(Graphic::YAxis, -1.0, 1.0);
    plot.grab();
    const QSizeF size = plot.canvas()->size();
    QVERIFY(size.width() > 300.0 && size.height() > 200.0);
    const QPointF middle = plot.canvasPosition({150.0, 0.0});
    QVERIFY(QLineF(middle, QPointF(size.width() / 2.0, size.height() / 2.0)).length() < 2.0);
    QVERIFY(plot.canvasPosition({100.0, 1.0}).manhattanLength() < 2.0); // the top-left corner
    for (const QPointF point : {QPointF(100.0, -1.0), QPointF(133.0, 0.25), QPointF(500.0, 7.0)}) {
        const QPointF back = plot.pointAt(plot.canvasPosition(point));
        QVERIFY(std::abs(back.x() - point.x()) < 1e-9 && std::abs(back.y() - point.y()) < 1e-9);
    }
}

void tst_Graphic::precisionStep_data()
{
    QTest::addColumn<int>("given");
    QTest::addColumn<int>("stored");

    QTest::newRow("one") << 1 << 1;
    QTest::newRow("none") << 0 << 0;
    QTest::newRow("below 0") << -3 << 0;
    QTest::newRow("the largest") << 15 << 15;
    QTest::newRow("too large") << 16 << 15;
}

void tst_Graphic::precisionStep()
{
    QFETCH(int, given);
    QFETCH(int, stored);
    Graphic plot;
    plot.setAxisLabelPrecisionStep(7);
    plot.setAxisLabelPrecisionStep(given);
    QCOMPARE(plot.axisLabelPrecisionStep(), stored);
}

void tst_Graphic::curveWidth_data()
{
    QTest::addColumn<double>("given");
    QTest::addColumn<double>("stored");

    QTest::newRow("one and a half") << 1.5 << 1.5;
    QTest::newRow("too thin") << 0.0 << 0.5;
    QTest::newRow("below 0") << -2.0 << 0.5;
    QTest::newRow("too thick") << 21.0 << 20.0;
    QTest::newRow("not a number is ignored") << Nan << 3.0;
}

void tst_Graphic::curveWidth()
{
    QFETCH(double, given);
    QFETCH(double, stored);
    Graphic plot;
    plot.setCurveWidth(3.0);
    plot.setCurveWidth(given);
    QCOMPARE(plot.curveWidth(), stored);
}

void tst_Graphic::switches_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::addColumn<QString>("part"); // the object that is shown, if any
    QTest::addColumn<QString>("button");

    QTest::newRow("grid") << QByteArray("gridVisible") << QString() << "grid";
    QTest::newRow("cursor") << QByteArray("cursorVisible") << QString() << "cursor";
    QTest::newRow("paused") << QByteArray("paused") << QString() << "pause";
    QTest::newRow("fitted") << QByteArray("fitted") << QString() << "fit";
    QTest::newRow("border inputs") << QByteArray("borderInputsVisible") << "borderInputs"
                                   << "borders";
    QTest::newRow("status") << QByteArray("statusVisible") << "status"
                            << "status";
    QTest::newRow("legend") << QByteArray("legendVisible") << "legend"
                            << "legend";
}

void tst_Graphic::switches()
{
    QFETCH(QByteArray, property);
    QFETCH(QString, part);
    QFETCH(QString, button);
    Graphic plot;
    plot.setButtons(Graphic::AllButtons);
    plot.show();
    const auto *tool = plot.findChild<QToolButton *>(button);
    QVERIFY(tool);
    for (const bool isOn : {true, false, true}) {
        plot.setProperty(property.constData(), isOn);
        QCOMPARE(plot.property(property.constData()).toBool(), isOn);
        QCOMPARE(tool->isChecked(), isOn);
        if (!part.isEmpty())
            QCOMPARE(plot.findChild<QWidget *>(part)->isVisible(), isOn);
    }
    const QMetaProperty found = plot.metaObject()->property(plot.metaObject()->indexOfProperty(property.constData()));
    QVERIFY(found.isReadable() && found.isWritable());
}

void tst_Graphic::toolBarShowsItsButtons_data()
{
    QTest::addColumn<int>("mask");
    QTest::addColumn<QStringList>("shown");

    QTest::newRow("the plot widget's") << 0x2207 << QStringList({"cursor", "fit", "grid", "pause", "save"});
    QTest::newRow("none") << 0 << QStringList();
    QTest::newRow("one") << 0x20 << QStringList({"clear"});
    QTest::newRow("bits without a button") << 0x10000001 << QStringList({"fit"});
    QTest::newRow("only bits without a button") << 0x5000 << QStringList();
    QTest::newRow("all") << int(Graphic::AllButtons)
                         << QStringList({"borders", "clear", "copy", "cursor", "fit", "grid", "legend", "pause", "save",
                                         "status", "zoom_in", "zoom_out"});
}

void tst_Graphic::toolBarShowsItsButtons()
{
    QFETCH(int, mask);
    QFETCH(QStringList, shown);
    Graphic plot;
    plot.show();
    plot.setButtons(Graphic::Buttons(mask));
    QCOMPARE(int(plot.buttons()), mask);
    QStringList names;
    const auto buttons = plot.findChildren<QToolButton *>();
    for (const QToolButton *button : buttons) {
        QVERIFY(button->isHidden() || !button->icon().isNull());
        QVERIFY(!button->toolTip().isEmpty());
        if (button->isVisible())
            names << button->objectName();
    }
    names.sort();
    QCOMPARE(names, shown);
    QCOMPARE(plot.findChild<QWidget *>(QStringLiteral("toolBar"))->isVisible(), !shown.isEmpty());
}

void tst_Graphic::readyOnlyWhenSeen()
{
    Graphic plot;
    QVERIFY(!plot.isReadyToRepaint());
    plot.update(false);
    plot.update(true);
    plot.show();
    QVERIFY(QTest::qWaitForWindowExposed(&plot));
    QVERIFY(plot.isReadyToRepaint());
    plot.resize(60, 40);
    plot.grab(); // so that its parts take their places
    QVERIFY(plot.canvas()->size().isEmpty());
    QVERIFY(!plot.isReadyToRepaint());
    plot.resize(600, 400);
    plot.grab();
    QVERIFY(plot.isReadyToRepaint());
    plot.hide();
    QVERIFY(!plot.isReadyToRepaint());
}

void tst_Graphic::fitsIntoSmallPlaces()
{
    Graphic plot;
    plot.setGraphicsCount(20, true);
    for (int i = 0; i < 20; ++i)
        plot.graphic(i).name = QStringLiteral("A curve with a long name");
    plot.updateLegend(true);
    plot.show();
    for (const QSize size : {QSize(300, 200), QSize(60, 40), QSize(1, 1), QSize(900, 600)}) {
        plot.resize(size);
        plot.updateLegend(true);
        QVERIFY(!plot.grab().isNull());
        QCOMPARE(plot.size(), size);
        // The curves come first.
        const auto *legend = plot.findChild<QWidget *>(QStringLiteral("legend"));
        QVERIFY(legend->height() <= plot.height() / 5);
    }
}

void tst_Graphic::lowPlotKeepsItsLegend()
{
    Graphic plot;
    plot.setGraphicsCount(1, true);
    plot.graphic(0).name = QStringLiteral("Level");
    plot.updateLegend(true);
    for (const int height : {90, 110, 400}) {
        plot.resize(400, height);
        plot.grab();
        const auto *entry = plot.findChild<QWidget *>(QStringLiteral("legend"))->findChild<QAbstractButton *>();
        QVERIFY(entry->height() >= entry->fontMetrics().height());
        QVERIFY(entry->parentWidget()->height() >= entry->height());
    }
}

void tst_Graphic::everythingBeforeItIsShown()
{
    // Whatever is called first, nothing needs a window.
    Graphic plot;
    plot.updateLegend(false);
    plot.clear();
    plot.fit();
    plot.setTimeAxis(true);
    plot.setAxisTitle(Graphic::XAxis, QStringLiteral("Time"));
    plot.setAxisUnit(Graphic::YAxis, QStringLiteral("V"));
    plot.setGraphicsCount(1, false);
    plot.addPoint(1.7e9, 1.0);
    plot.update(true);
    QVERIFY(plot.isTimeAxis());
    QCOMPARE(plot.axisTitle(Graphic::XAxis), QStringLiteral("Time"));
    QCOMPARE(plot.axisUnit(Graphic::YAxis), QStringLiteral("V"));
    QVERIFY(plot.visibleRange(Graphic::XAxis).first < 1.7e9);
    QVERIFY(!plot.grab().isNull());
}

KEL_TEST_MAIN(tst_Graphic)
#include "tst_graphic.moc"
