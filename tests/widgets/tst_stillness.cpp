#include "paintlimit.h"
#include "testmain.h"

#include <QElapsedTimer>
#include <QLabel>
#include <QRandomGenerator>
#include <graphic.h>
#include <keltabwidget.h>
#include <widgetlist.h>

namespace
{

constexpr int Tries = 60; ///< For each widget.
constexpr int QuietMs = 60;
constexpr int PatienceMs = 10000;

/// What makes the layout of the larger widgets harder.
void fill(QWidget &widget, QRandomGenerator &dice)
{
    if (auto *tabs = qobject_cast<KelTabWidget *>(&widget)) {
        for (int i = dice.bounded(6); i > 0; --i)
            tabs->addTab(new QLabel(QStringLiteral("A page")), QString(1 + dice.bounded(12), QLatin1Char('m')));
    }
    if (auto *plot = qobject_cast<Graphic *>(&widget)) {
        plot->setGraphicsCount(2);
        plot->setTimeAxis(dice.bounded(2) == 1);
        const int step = 1 + dice.bounded(1000);
        for (int i = 0; i < 20; ++i)
            plot->addPoint(1.795e9 + i * step, dice.bounded(1000.0), i % 2);
    }
}

void setAnyFont(QWidget &widget, QRandomGenerator &dice)
{
    QFont font = widget.font();
    font.setPointSize(5 + dice.bounded(25));
    widget.setFont(font);
}

/// Whether \a limit sees a time without a painting before patience ends.
bool comesToRest(PaintLimit &limit)
{
    QElapsedTimer patience;
    patience.start();
    do {
        limit.reset();
        QTest::qWait(QuietMs);
    } while (limit.most() > 0 && patience.elapsed() < PatienceMs);
    return limit.most() == 0;
}

} // namespace

/// A widget that nobody touches stands still, whatever its size and its font: one painting leads to no other.
class tst_Stillness : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void anySizeComesToRest_data();
    void anySizeComesToRest();
    void paintingForEverIsFound();
};

void tst_Stillness::anySizeComesToRest_data()
{
    QTest::addColumn<int>("index");
    for (int i = 0; i < kelWidgetList().size(); ++i)
        QTest::newRow(qPrintable(kelWidgetList().at(i).className)) << i;
}

void tst_Stillness::anySizeComesToRest()
{
    QFETCH(int, index);
    for (quint32 seed = 1; seed <= Tries; ++seed) {
        QRandomGenerator dice(seed);
        QWidget panel;
        panel.resize(900, 700);
        QWidget *widget = kelWidgetList().at(index).create(&panel);
        fill(*widget, dice);
        PaintLimit limit(panel);
        panel.show();
        for (int change = 0; change < 4; ++change) {
            setAnyFont(*widget, dice);
            widget->resize(dice.bounded(800), dice.bounded(600));
            QCoreApplication::processEvents();
            QVERIFY2(!limit.isExceeded(), qPrintable(QString::number(seed)));
            limit.reset();
        }
        if (seed % 10 == 0)
            QVERIFY2(comesToRest(limit), qPrintable(QString::number(seed)));
    }
}

/// The limit itself notices.
void tst_Stillness::paintingForEverIsFound()
{
    class Restless : public QWidget
    {
    public:
        using QWidget::QWidget;

    protected:
        void paintEvent(QPaintEvent *) override { update(); }
    };

    QWidget panel;
    Restless widget(&panel);
    PaintLimit limit(panel);
    panel.show();
    QTRY_VERIFY(limit.isExceeded());
    QVERIFY(!panel.isVisible());
}

KEL_TEST_MAIN(tst_Stillness)
#include "tst_stillness.moc"
