#include "buttonlog.h"
#include "testmain.h"

/// What the host of the button sees: visibility, delayed clicks and the watch on its window.
class tst_KelButtonHost : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void delayed_data();
    void delayed();
    void visibilityOutsideDesignMode();
    void visibilityInDesignMode();
    void outermostAncestorIsWatched_data();
    void outermostAncestorIsWatched();
    void filterPassesEventsOn();
    void autoConnectIsNeverReady();
};

void tst_KelButtonHost::delayed_data()
{
    QTest::addColumn<QString>("firstLine");
    QTest::newRow("delayedClick") << QStringLiteral("pressed");
    QTest::newRow("delayedToggle") << QStringLiteral("toggledID -1 true");
}

void tst_KelButtonHost::delayed()
{
    QFETCH(QString, firstLine);
    KelButton button;
    button.setCheckable(true);
    ButtonLog log(&button);
    QVERIFY(QMetaObject::invokeMethod(&button, QTest::currentDataTag()));
    QCOMPARE(log.take(), QStringList());
    QVERIFY(!button.isChecked());

    QCoreApplication::sendPostedEvents(&button);
    QVERIFY(button.isChecked());
    QCOMPARE(log.take().value(0), firstLine);
}

void tst_KelButtonHost::visibilityOutsideDesignMode()
{
    QWidget window;
    KelButton button(&window);
    window.show();
    QVERIFY(button.buttonVisible());
    button.setButtonVisible(false);
    QVERIFY(!button.isVisible());
    QVERIFY(!button.buttonVisible());

    button.designMode = true;
    QVERIFY(button.buttonVisible()); // Hiding stored nothing.
    button.designMode = false;
    button.setButtonVisible(true);
    QVERIFY(button.isVisible() && button.buttonVisible());
}

void tst_KelButtonHost::visibilityInDesignMode()
{
    QWidget window;
    KelButton button(&window);
    button.designMode = true;
    window.show();
    button.setButtonVisible(false);
    QVERIFY(button.isVisible());
    QVERIFY(!button.buttonVisible());
    button.designMode = false;
    QVERIFY(button.buttonVisible());
}

void tst_KelButtonHost::outermostAncestorIsWatched_data()
{
    QTest::addColumn<int>("type");
    QTest::addColumn<bool>("pending");
    QTest::newRow("Polish") << int(QEvent::Polish) << false;
    QTest::newRow("1000") << 1000 << false;
    QTest::newRow("another") << 1001 << true;
}

void tst_KelButtonHost::outermostAncestorIsWatched()
{
    QFETCH(int, type);
    QFETCH(bool, pending);

    QWidget window;
    auto *page = new QWidget(&window);
    auto *dialog = new QWidget(page, Qt::Dialog); // A window of its own is no end of the line.
    KelButton button(dialog);
    QEvent event(static_cast<QEvent::Type>(type));

    QCoreApplication::sendEvent(page, &event);
    QCoreApplication::sendEvent(dialog, &event);
    QCOMPARE(button.autoConnectPending, true);
    for (int i = 0; i < 2; ++i) { // The filter stays where it is.
        button.autoConnectPending = true;
        QCoreApplication::sendEvent(&window, &event);
        QCOMPARE(button.autoConnectPending, pending);
    }
}

void tst_KelButtonHost::filterPassesEventsOn()
{
    struct Window : QWidget {
        bool event(QEvent *event) override
        {
            seen = seen || event->type() == QEvent::User;
            return QWidget::event(event);
        }
        bool seen = false;
    } window;
    const KelButton button(&window);
    QEvent event(QEvent::User);
    QCoreApplication::sendEvent(&window, &event);
    QVERIFY(window.seen);
}

void tst_KelButtonHost::autoConnectIsNeverReady()
{
    QWidget window;
    KelButton button(&window);
    QCOMPARE(button.autoConnect(), false);
    KelButton alone;
    QCOMPARE(alone.autoConnect(), false);
}

KEL_TEST_MAIN(tst_KelButtonHost)
#include "tst_kelbuttonhost.moc"
