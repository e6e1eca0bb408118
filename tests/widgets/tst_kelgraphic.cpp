#include "testmain.h"

#include <kelgraphic.h>
#include <scaling.h>

#include <QAbstractEventDispatcher>
#include <QMetaProperty>
#include <QPainter>
#include <QTimerEvent>

#include <cmath>

int qInitResources_widgets();
int qCleanupResources_widgets();

namespace
{

constexpr int TickMs = 25;
/// Long enough for what waits to be painted.
constexpr int SettleMs = 60;
constexpr double Inset = 0.7;
/// Where the middle of the icon's spokes lies, in icon sizes from its middle.
constexpr double SpokeRadius = 0.3125;

QStringList texts(std::initializer_list<const char *> list)
{
    QStringList result;
    for (const char *text : list)
        result << QString::fromLatin1(text);
    return result;
}

/// The icon's timers: of the interval that it turns at.
QList<QAbstractEventDispatcher::TimerInfo> iconTimers(KelGraphic &plot)
{
    QList<QAbstractEventDispatcher::TimerInfo> found;
    for (const auto &info : QAbstractEventDispatcher::instance()->registeredTimers(&plot)) {
        if (info.interval == TickMs)
            found << info;
    }
    return found;
}

/// A plot whose icon turns when the test says so, and not by itself.
class SteppedGraphic : public KelGraphic
{
public:
    void tick()
    {
        const auto timers = iconTimers(*this);
        if (timers.size() != 1)
            qFatal("%d timers turn the icon", timers.size());
        deliver(timers.first().timerId);
    }

    /// As if the timer \a id had run out.
    void deliver(int id)
    {
        QTimerEvent event(id);
        KelGraphic::timerEvent(&event);
    }

protected:
    void timerEvent(QTimerEvent *event) override
    {
        for (const auto &info : iconTimers(*this)) {
            if (info.timerId == event->timerId())
                return;
        }
        KelGraphic::timerEvent(event);
    }
};

/// What \a plot adds to its canvas, on transparent ground.
QImage overlay(KelGraphic &plot)
{
    QImage picture(plot.canvas()->size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    QPainter painter(&picture);
    Q_EMIT plot.graphicPaintEvent(&painter);
    return picture;
}

bool isEmpty(const QImage &picture)
{
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            if (qAlpha(picture.pixel(x, y)) > 0)
                return false;
        }
    }
    return true;
}

bool showsIcon(KelGraphic &plot)
{
    return !isEmpty(overlay(plot));
}

/// The icon as it belongs on the canvas of \a plot at \a angle.
QImage expectedOverlay(KelGraphic &plot, int angle, bool smooth = true)
{
    QImage picture(plot.canvas()->size(), QImage::Format_ARGB32_Premultiplied);
    picture.fill(Qt::transparent);
    const double side = preferredIconSize(2.0F, &plot).width();
    QTransform place;
    place.translate(picture.width() - Inset * side, Inset * side);
    place.rotate(angle);
    QPainter painter(&picture);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
    painter.setTransform(place);
    painter.drawImage(QRectF(-side / 2, -side / 2, side, side), QImage(QStringLiteral(":/icons/progress.png")));
    return picture;
}

/// How opaque the icon of \a plot is at the middle of the spoke that points \a degrees clockwise from the top.
int spokeAlpha(KelGraphic &plot, const QImage &picture, int degrees)
{
    const double side = preferredIconSize(2.0F, &plot).width();
    const double radians = degrees * std::acos(-1.0) / 180.0;
    const QPointF where(picture.width() - Inset * side + SpokeRadius * side * std::sin(radians),
                        Inset * side - SpokeRadius * side * std::cos(radians));
    return qAlpha(picture.pixel(int(where.x()), int(where.y())));
}

/// A plot on the screen with two variables.
void show(KelGraphic &plot)
{
    plot.resize(400, 240);
    plot.setVariables(texts({"a=Alpha", "b=Beta"}));
    plot.show();
    plot.grab(); // so that the canvas has its size
}

} // namespace

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
    void noIconAtFirst();
    void iconSpinsUntilAllAreDone();
    void sameNameTwiceCountsOnce();
    void anyNameCounts();
    void oneNameTooManyShowsTheIconAgain();
    void emptyListNeverShowsTheIcon();
    void missingPictureShowsNothing();
    void resetEmptiesTheCurves();
    void resetAfterAllDone();
    void showProgressKeepsWhatIsDone();
    void oneTimerOfTheRightKind();
    void timerTurnsByItself();
    void timerStopsAtItsNextTick();
    void lastTickTurnsTheIcon();
    void ticksRepaintTheCanvas();
    void otherTimersDoNotTurn();
    void iconTurnsInSteps_data();
    void iconTurnsInSteps();
    void iconIsOnTheScreen();
    void iconFollowsTheCanvas();
    void iconHasNoSizeAtFirst();
    void iconIsSizedByTheFont_data();
    void iconIsSizedByTheFont();
    void painterIsRestored();
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

void tst_KelGraphic::noIconAtFirst()
{
    KelGraphic plot;
    show(plot);
    QVERIFY(!showsIcon(plot));
    QCOMPARE(iconTimers(plot).size(), 0);
    plot.graphicDone(QStringLiteral("a"));
    QVERIFY(!showsIcon(plot));
}

void tst_KelGraphic::iconSpinsUntilAllAreDone()
{
    KelGraphic plot;
    show(plot);
    plot.reset();
    QVERIFY(showsIcon(plot));
    plot.graphicDone(QStringLiteral("a"));
    QVERIFY(showsIcon(plot));
    plot.graphicDone(QStringLiteral("b"));
    QVERIFY(!showsIcon(plot));
}

void tst_KelGraphic::sameNameTwiceCountsOnce()
{
    KelGraphic plot;
    show(plot);
    plot.reset();
    plot.graphicDone(QStringLiteral("a"));
    plot.graphicDone(QStringLiteral("a"));
    QVERIFY(showsIcon(plot));
    plot.graphicDone(QStringLiteral("b"));
    QVERIFY(!showsIcon(plot));
}

void tst_KelGraphic::anyNameCounts()
{
    KelGraphic plot;
    show(plot);
    plot.reset();
    plot.graphicDone(QStringLiteral("nobody"));
    plot.graphicDone(QString());
    QVERIFY(!showsIcon(plot));
}

void tst_KelGraphic::oneNameTooManyShowsTheIconAgain()
{
    KelGraphic plot;
    show(plot);
    plot.reset();
    for (const char *name : {"a", "b", "c"})
        plot.graphicDone(QString::fromLatin1(name));
    QVERIFY(showsIcon(plot));
    QCOMPARE(iconTimers(plot).size(), 1);
}

void tst_KelGraphic::emptyListNeverShowsTheIcon()
{
    SteppedGraphic plot;
    show(plot);
    plot.setVariables({});
    plot.reset();
    QVERIFY(!showsIcon(plot));
    plot.graphicDone(QStringLiteral("a"));
    QVERIFY(!showsIcon(plot));
    plot.tick();
    QVERIFY(!showsIcon(plot));
}

void tst_KelGraphic::missingPictureShowsNothing()
{
    qCleanupResources_widgets();
    KelGraphic plot;
    qInitResources_widgets();
    show(plot);
    plot.reset();
    QVERIFY(!showsIcon(plot));
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

void tst_KelGraphic::resetAfterAllDone()
{
    SteppedGraphic plot;
    show(plot);
    plot.reset();
    plot.graphicDone(QStringLiteral("a"));
    plot.graphicDone(QStringLiteral("b"));
    plot.tick();
    QCOMPARE(iconTimers(plot).size(), 0);

    plot.reset();
    QVERIFY(showsIcon(plot));
    plot.tick();
    QCOMPARE(iconTimers(plot).size(), 1);
}

void tst_KelGraphic::showProgressKeepsWhatIsDone()
{
    KelGraphic plot;
    show(plot);
    plot.addPoint(1.0, 2.0, 0);
    plot.graphicDone(QStringLiteral("a"));
    plot.showProgress();
    QVERIFY(showsIcon(plot));
    QCOMPARE(plot.pointsCount(0), 1);
    plot.graphicDone(QStringLiteral("b"));
    QVERIFY(!showsIcon(plot));
}

void tst_KelGraphic::oneTimerOfTheRightKind()
{
    KelGraphic plot;
    const int others = QAbstractEventDispatcher::instance()->registeredTimers(&plot).size();
    plot.showProgress();
    QCOMPARE(iconTimers(plot).size(), 1);
    QCOMPARE(iconTimers(plot).first().timerType, Qt::CoarseTimer);
    const int id = iconTimers(plot).first().timerId;

    plot.showProgress();
    plot.reset();
    QCOMPARE(iconTimers(plot).size(), 1);
    QCOMPARE(iconTimers(plot).first().timerId, id);
    QCOMPARE(QAbstractEventDispatcher::instance()->registeredTimers(&plot).size(), others + 1);
}

void tst_KelGraphic::timerTurnsByItself()
{
    KelGraphic plot;
    show(plot);
    plot.reset();
    const QImage first = overlay(plot);
    QTRY_VERIFY(overlay(plot) != first);
    plot.graphicDone(QStringLiteral("a"));
    plot.graphicDone(QStringLiteral("b"));
    QTRY_COMPARE(iconTimers(plot).size(), 0);
}

void tst_KelGraphic::timerStopsAtItsNextTick()
{
    SteppedGraphic plot;
    show(plot);
    plot.reset();
    plot.tick();
    QCOMPARE(iconTimers(plot).size(), 1);
    plot.graphicDone(QStringLiteral("a"));
    plot.graphicDone(QStringLiteral("b"));
    QCOMPARE(iconTimers(plot).size(), 1);
    plot.tick();
    QCOMPARE(iconTimers(plot).size(), 0);
}

void tst_KelGraphic::lastTickTurnsTheIcon()
{
    SteppedGraphic plot;
    show(plot);
    plot.reset();
    plot.graphicDone(QStringLiteral("a"));
    plot.graphicDone(QStringLiteral("b"));
    plot.tick();
    QCOMPARE(iconTimers(plot).size(), 0);

    // A name too many shows where the icon stands.
    plot.graphicDone(QStringLiteral("c"));
    QCOMPARE(overlay(plot), expectedOverlay(plot, 10));
}

void tst_KelGraphic::ticksRepaintTheCanvas()
{
    SteppedGraphic plot;
    show(plot);
    plot.reset();
    QVERIFY(QTest::qWaitForWindowExposed(&plot));
    QTest::qWait(SettleMs);

    int paints = 0;
    connect(&plot, &Graphic::graphicPaintEvent, &plot, [&paints] { ++paints; });
    for (const bool isLast : {false, true}) {
        if (isLast) {
            plot.graphicDone(QStringLiteral("a"));
            plot.graphicDone(QStringLiteral("b"));
        }
        paints = 0;
        QTest::qWait(SettleMs);
        QCOMPARE(paints, 0);
        plot.tick();
        QCOMPARE(paints, 0); // in the event loop, not at once
        QTRY_VERIFY(paints > 0);
    }
}

void tst_KelGraphic::otherTimersDoNotTurn()
{
    SteppedGraphic plot;
    show(plot);
    plot.reset();
    const int other = plot.startTimer(100000);
    for (int i = 0; i < 3; ++i)
        plot.deliver(other);
    QCOMPARE(overlay(plot), expectedOverlay(plot, 0));

    plot.graphicDone(QStringLiteral("a"));
    plot.graphicDone(QStringLiteral("b"));
    plot.deliver(other);
    QCOMPARE(iconTimers(plot).size(), 1);
}

void tst_KelGraphic::iconTurnsInSteps_data()
{
    QTest::addColumn<int>("ticks");
    QTest::addColumn<int>("angle");

    QTest::newRow("at first") << 0 << 0;
    QTest::newRow("one step") << 1 << 10;
    QTest::newRow("to the next spoke") << 3 << 30;
    QTest::newRow("a quarter") << 9 << 90;
    QTest::newRow("half") << 18 << 180;
    QTest::newRow("three quarters") << 27 << 270;
    QTest::newRow("before it is round") << 35 << 350;
    QTest::newRow("round") << 36 << 0;
    QTest::newRow("the second time round") << 48 << 120;
}

void tst_KelGraphic::iconTurnsInSteps()
{
    QFETCH(int, ticks);
    QFETCH(int, angle);
    SteppedGraphic plot;
    show(plot);
    plot.reset();
    for (int i = 0; i < ticks; ++i)
        plot.tick();

    const QImage shown = overlay(plot);
    QCOMPARE(shown, expectedOverlay(plot, angle));
    QVERIFY(shown != expectedOverlay(plot, angle + 10));
    if (angle % 90 != 0)
        QVERIFY(shown != expectedOverlay(plot, angle, false));
    // The full spoke leads the way, clockwise; before it stands the faintest.
    QVERIFY(spokeAlpha(plot, shown, angle) > 200);
    QVERIFY(spokeAlpha(plot, shown, angle + 30) < 100);
    QVERIFY(spokeAlpha(plot, shown, angle - 90) > spokeAlpha(plot, shown, angle + 90));
}

void tst_KelGraphic::iconIsOnTheScreen()
{
    SteppedGraphic plot;
    show(plot);
    const QImage before = plot.canvas()->grab().toImage();
    plot.showProgress();
    QImage expected = before;
    QPainter(&expected).drawImage(0, 0, expectedOverlay(plot, 0));
    const QImage shown = plot.canvas()->grab().toImage();
    QVERIFY(shown != before);
    // Mixed at once or over a layer of its own: the same but for rounding.
    for (int y = 0; y < shown.height(); ++y) {
        for (int x = 0; x < shown.width(); ++x) {
            const QColor left = shown.pixelColor(x, y);
            const QColor right = expected.pixelColor(x, y);
            QVERIFY(qAbs(left.red() - right.red()) < 4 && qAbs(left.blue() - right.blue()) < 4);
        }
    }

    plot.graphicDone(QStringLiteral("a"));
    plot.graphicDone(QStringLiteral("b"));
    QCOMPARE(plot.canvas()->grab().toImage(), before);
}

void tst_KelGraphic::iconFollowsTheCanvas()
{
    SteppedGraphic plot;
    show(plot);
    plot.reset();
    for (const QSize &size : {QSize(300, 200), QSize(640, 400)}) {
        plot.resize(size);
        QCoreApplication::processEvents();
        QTRY_VERIFY(plot.canvas()->width() > size.width() / 2);
        QCOMPARE(overlay(plot), expectedOverlay(plot, 0));
    }
}

void tst_KelGraphic::iconHasNoSizeAtFirst()
{
    KelGraphic plot;
    plot.setVariables(texts({"a=Alpha"}));
    plot.showProgress();
    QVERIFY(!showsIcon(plot));
    QFont large = plot.font();
    large.setPointSize(30);
    plot.setFont(large);
    QVERIFY(!showsIcon(plot));
}

void tst_KelGraphic::iconIsSizedByTheFont_data()
{
    QTest::addColumn<bool>("resized");

    QTest::newRow("when resized") << true;
    QTest::newRow("when the font changes") << false;
}

void tst_KelGraphic::iconIsSizedByTheFont()
{
    QFETCH(bool, resized);
    SteppedGraphic plot;
    show(plot);
    plot.reset();
    QCOMPARE(overlay(plot), expectedOverlay(plot, 0));

    const QSize usual = preferredIconSize(2.0F, &plot);
    const QFont before = QApplication::font();
    QFont large = before;
    large.setPointSize(before.pointSize() * 2);
    if (resized)
        plot.setFont(before); // so that the application's change does not reach the plot
    QApplication::setFont(large);
    const QSize now = preferredIconSize(2.0F, &plot);
    if (resized)
        plot.resize(plot.size() + QSize(10, 10));
    const QImage shown = overlay(plot);
    const QImage expected = expectedOverlay(plot, 0);
    QApplication::setFont(before);
    QVERIFY(now != usual);
    QCOMPARE(shown, expected);
}

void tst_KelGraphic::painterIsRestored()
{
    SteppedGraphic plot;
    show(plot);
    plot.reset();
    plot.tick();
    QImage picture(plot.canvas()->size(), QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&picture);
    painter.translate(3, 4);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    const QTransform transform = painter.transform();
    const QPainter::RenderHints hints = painter.renderHints();
    Q_EMIT plot.graphicPaintEvent(&painter);
    QCOMPARE(painter.transform(), transform);
    QCOMPARE(painter.renderHints(), hints);
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
