// The icon that turns on a panel's plot until all its data is there.
#include "graphicbench.h"
#include "testmain.h"

int qInitResources_widgets();
int qCleanupResources_widgets();

class tst_KelGraphicIcon : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void noIconAtFirst();
    void iconSpinsUntilAllAreDone();
    void sameNameTwiceCountsOnce();
    void anyNameCounts();
    void oneNameTooManyShowsTheIconAgain();
    void emptyListNeverShowsTheIcon();
    void missingPictureShowsNothing();
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
};

void tst_KelGraphicIcon::noIconAtFirst()
{
    KelGraphic plot;
    show(plot);
    QVERIFY(!showsIcon(plot));
    QCOMPARE(iconTimers(plot).size(), 0);
    plot.graphicDone(QStringLiteral("a"));
    QVERIFY(!showsIcon(plot));
}

void tst_KelGraphicIcon::iconSpinsUntilAllAreDone()
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

void tst_KelGraphicIcon::sameNameTwiceCountsOnce()
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

void tst_KelGraphicIcon::anyNameCounts()
{
    KelGraphic plot;
    show(plot);
    plot.reset();
    plot.graphicDone(QStringLiteral("nobody"));
    plot.graphicDone(QString());
    QVERIFY(!showsIcon(plot));
}

void tst_KelGraphicIcon::oneNameTooManyShowsTheIconAgain()
{
    KelGraphic plot;
    show(plot);
    plot.reset();
    for (const char *name : {"a", "b", "c"})
        plot.graphicDone(QString::fromLatin1(name));
    QVERIFY(showsIcon(plot));
    QCOMPARE(iconTimers(plot).size(), 1);
}

void tst_KelGraphicIcon::emptyListNeverShowsTheIcon()
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

void tst_KelGraphicIcon::missingPictureShowsNothing()
{
    qCleanupResources_widgets();
    KelGraphic plot;
    qInitResources_widgets();
    show(plot);
    plot.reset();
    QVERIFY(!showsIcon(plot));
}

void tst_KelGraphicIcon::resetAfterAllDone()
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

void tst_KelGraphicIcon::showProgressKeepsWhatIsDone()
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

void tst_KelGraphicIcon::oneTimerOfTheRightKind()
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

void tst_KelGraphicIcon::timerTurnsByItself()
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

void tst_KelGraphicIcon::timerStopsAtItsNextTick()
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

void tst_KelGraphicIcon::lastTickTurnsTheIcon()
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

void tst_KelGraphicIcon::ticksRepaintTheCanvas()
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

void tst_KelGraphicIcon::otherTimersDoNotTurn()
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

void tst_KelGraphicIcon::iconTurnsInSteps_data()
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

void tst_KelGraphicIcon::iconTurnsInSteps()
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

void tst_KelGraphicIcon::iconIsOnTheScreen()
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

void tst_KelGraphicIcon::iconFollowsTheCanvas()
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

void tst_KelGraphicIcon::iconHasNoSizeAtFirst()
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

void tst_KelGraphicIcon::iconIsSizedByTheFont_data()
{
    QTest::addColumn<bool>("resized");

    QTest::newRow("when resized") << true;
    QTest::newRow("when the font changes") << false;
}

void tst_KelGraphicIcon::iconIsSizedByTheFont()
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

void tst_KelGraphicIcon::painterIsRestored()
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

KEL_TEST_MAIN(tst_KelGraphicIcon)
#include "tst_kelgraphicicon.moc"
