// The settings and the variables of a panel's plot.
#include "graphicbench.h"
#include "testmain.h"

#include <QMetaProperty>

class tst_KelGraphic : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void settings();
    void metaObject();
    void variables_data();
    void variables();
    void variablesAreReplaced();
    void variablesKeepThePoints();
    void variablesAreAProperty();
    void legendFollowsTheTitles();
    void equalLeftTexts();
    void variablesLeaveTheProgressAsItIs();
    void resetEmptiesTheCurves();
    void debugViewIsNothing();
};

void tst_KelGraphic::settings()
{
    const KelGraphic plot;
    QCOMPARE(plot.historySize(), -1.0);
    QCOMPARE(plot.axisLabelPrecisionStep(), 1);
    QCOMPARE(plot.curveWidth(), 1.5);
    QVERIFY(!plot.borderInputsVisible());
    QVERIFY(!plot.statusVisible());
    QVERIFY(plot.legendVisible());
    QCOMPARE(int(plot.buttons()), 8711);
    QCOMPARE(plot.variables(), QStringList());
    QCOMPARE(plot.graphicsCount(), 0);
}

void tst_KelGraphic::metaObject()
{
    const QMetaObject &meta = KelGraphic::staticMetaObject;
    QVERIFY(meta.inherits(&Graphic::staticMetaObject));
    const QMetaMethod paint = meta.method(meta.indexOfSlot("canvasPaint(QPainter*)"));
    QCOMPARE(paint.access(), QMetaMethod::Private);
    for (const char *slot : {"graphicDone(QString)", "reset()", "showProgress()"}) {
        QVERIFY2(meta.indexOfSlot(slot) >= 0, slot);
        QCOMPARE(meta.method(meta.indexOfSlot(slot)).access(), QMetaMethod::Public);
    }

    const QMetaProperty property = meta.property(meta.indexOfProperty("variables"));
    QCOMPARE(property.userType(), int(QMetaType::QStringList));
    QVERIFY(property.isReadable());
    QVERIFY(property.isWritable());
    QVERIFY(!property.isDesignable());
    QVERIFY(property.isStored());
}

void tst_KelGraphic::variables_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("name");
    QTest::addColumn<QString>("title");
    QTest::addColumn<QString>("readBack");

    const auto row = [](const char *name, const char *text, const char *left, const char *right, const char *readBack) {
        QTest::newRow(name) << QString::fromLatin1(text) << QString::fromLatin1(left) << QString::fromLatin1(right)
                            << QString::fromLatin1(readBack);
    };
    row("both sides are trimmed", " T1 =  Temperature ", "T1", "Temperature", "T1=Temperature");
    row("the first sign counts", "a=b=c", "a", "b=c", "a=b=c");
    row("sign at the front", "=x", "=x", "=x", "=x==x");
    row("no sign", "x", "x", "x", "x=x");
    row("no sign, not trimmed", " x ", " x ", " x ", " x = x ");
    row("blank left side", " =x", "", "x", "=x");
}

void tst_KelGraphic::variables()
{
    QFETCH(QString, text);
    QFETCH(QString, name);
    QFETCH(QString, title);
    QFETCH(QString, readBack);

    KelGraphic plot;
    plot.setVariables({QStringLiteral("first=First"), text});
    QCOMPARE(plot.graphicsCount(), 2);
    QCOMPARE(plot.graphic(0).name, QStringLiteral("First"));
    QCOMPARE(plot.graphic(1).name, title);
    QCOMPARE(plot.variables(), QStringList({QStringLiteral("first=First"), readBack}));
    QCOMPARE(plot.variableNames(), QStringList({QStringLiteral("first"), name}));
    const QMap<QString, QString> map = {{QStringLiteral("first"), QStringLiteral("First")}, {name, title}};
    QCOMPARE(plot.variablesMap(), map);
}

void tst_KelGraphic::variablesAreReplaced()
{
    KelGraphic plot;
    plot.setVariables(texts({"a=Alpha", "b=Beta", "c=Gamma"}));
    plot.setVariables(texts({"d=Delta"}));
    QCOMPARE(plot.variables(), texts({"d=Delta"}));
    QCOMPARE(plot.graphicsCount(), 1);
    QCOMPARE(plot.graphic(0).name, QStringLiteral("Delta"));
    plot.setVariables({});
    QCOMPARE(plot.variables(), QStringList());
    QCOMPARE(plot.graphicsCount(), 0);
}

void tst_KelGraphic::variablesKeepThePoints()
{
    KelGraphic plot;
    plot.setVariables(texts({"a=Alpha", "b=Beta"}));
    plot.addPoint(1.0, 2.0, 0);
    plot.addPoint(1.0, 3.0, 1);
    plot.setVariables(texts({"a=Other title", "b=Beta", "c=Gamma"}));
    QCOMPARE(plot.pointsCount(0), 1);
    QCOMPARE(plot.pointsCount(1), 1);
    QCOMPARE(plot.pointsCount(2), 0);
}

void tst_KelGraphic::variablesAreAProperty()
{
    KelGraphic plot;
    QVERIFY(plot.setProperty("variables", texts({"a=Alpha", "x"})));
    QCOMPARE(plot.property("variables").toStringList(), texts({"a=Alpha", "x=x"}));
}

void tst_KelGraphic::legendFollowsTheTitles()
{
    KelGraphic plot;
    plot.resize(400, 240);
    plot.setVariables(texts({"a=Alpha", "b=Beta"}));
    Graphic same;
    same.resize(400, 240);
    same.setCurveWidth(1.5);
    same.setAxisLabelPrecisionStep(1);
    same.setButtons(plot.buttons());
    same.setGraphicsCount(2);
    plot.show();
    same.show();
    QVERIFY(plot.picture() != same.picture());
    same.graphic(0).name = QStringLiteral("Alpha");
    same.graphic(1).name = QStringLiteral("Beta");
    same.updateLegend();
    QCOMPARE(plot.picture(), same.picture());

    // While it is shown as well.
    plot.setVariables(texts({"a=Gamma", "b=Beta"}));
    QVERIFY(plot.picture() != same.picture());
    same.graphic(0).name = QStringLiteral("Gamma");
    same.updateLegend();
    QCOMPARE(plot.picture(), same.picture());

    // Narrow, it goes below the tool bar; wide, beside it.
    for (const int width : {240, 700}) {
        plot.resize(width, 240);
        same.resize(width, 240);
        QCOMPARE(plot.picture(), same.picture());
    }
}

void tst_KelGraphic::equalLeftTexts()
{
    KelGraphic plot;
    plot.setVariables(texts({"a=First", "b=Other", "a=Second"}));
    QCOMPARE(plot.variableNames(), texts({"a", "b", "a"}));
    QCOMPARE(plot.variablesMap().size(), 2);
    QCOMPARE(plot.variablesMap().value(QStringLiteral("a")), QStringLiteral("Second"));
    QCOMPARE(plot.graphic(0).name, QStringLiteral("First"));
    QCOMPARE(plot.graphic(2).name, QStringLiteral("Second"));
}

void tst_KelGraphic::variablesLeaveTheProgressAsItIs()
{
    SteppedGraphic plot;
    show(plot);
    plot.reset();
    plot.graphicDone(QStringLiteral("a"));
    // Still two names of two: "a" stays done, and nothing is counted anew before the next name.
    plot.setVariables(texts({"c=Gamma"}));
    QVERIFY(showsIcon(plot));
    plot.setVariables(texts({"a=Alpha", "b=Beta"}));
    plot.graphicDone(QStringLiteral("b"));
    QVERIFY(!showsIcon(plot));

    // Done stays done, and no timer starts, with more variables than names.
    plot.tick();
    plot.setVariables(texts({"a=Alpha", "b=Beta", "c=Gamma"}));
    QVERIFY(!showsIcon(plot));
    QCOMPARE(iconTimers(plot).size(), 0);
    plot.graphicDone(QStringLiteral("a"));
    QVERIFY(showsIcon(plot));
}

void tst_KelGraphic::resetEmptiesTheCurves()
{
    KelGraphic plot;
    show(plot);
    plot.addPoint(1.0, 2.0, 0);
    plot.addPoint(1.0, 3.0, 1);
    plot.graphicDone(QStringLiteral("a"));
    plot.reset();
    QCOMPARE(plot.graphicsCount(), 2);
    QCOMPARE(plot.pointsCount(0), 0);
    QCOMPARE(plot.pointsCount(1), 0);
    QCOMPARE(plot.graphic(0).name, QStringLiteral("Alpha"));
    QCOMPARE(plot.variables(), texts({"a=Alpha", "b=Beta"}));

    // "a" is forgotten.
    plot.graphicDone(QStringLiteral("b"));
    QVERIFY(showsIcon(plot));
}

void tst_KelGraphic::debugViewIsNothing()
{
    SteppedGraphic plot;
    show(plot);
    const int children = plot.findChildren<QObject *>().size();
    plot.buildDebug();
    QCOMPARE(plot.findChildren<QObject *>().size(), children);
    QVERIFY(!showsIcon(plot));
}

KEL_TEST_MAIN(tst_KelGraphic)
#include "tst_kelgraphic.moc"
