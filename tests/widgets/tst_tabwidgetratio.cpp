#include "tabbench.h"
#include "testmain.h"

/// The kept picture of the tabs on screens with more pixels than the widgets count.
class tst_TabWidgetRatio : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pictureIsSharp_data();
    void pictureIsSharp();
};

static QImage pictureOf(QWidget &widget)
{
    return widget.grab().toImage().convertToFormat(QImage::Format_RGB32);
}

/// The largest distance of two channels at the same place.
static int difference(const QImage &one, const QImage &other)
{
    int largest = 0;
    for (int y = 0; y < one.height(); ++y) {
        for (int x = 0; x < one.width(); ++x) {
            const QColor a(one.pixel(x, y));
            const QColor b(other.pixel(x, y));
            largest = qMax(largest,
                           qMax(qAbs(a.red() - b.red()), qMax(qAbs(a.green() - b.green()), qAbs(a.blue() - b.blue()))));
        }
    }
    return largest;
}

void tst_TabWidgetRatio::pictureIsSharp_data()
{
    QTest::addColumn<int>("offset");
    QTest::newRow("not dragged") << 0;
    QTest::newRow("dragged") << -37;
}

void tst_TabWidgetRatio::pictureIsSharp()
{
    QFETCH(int, offset);

    TabBench bench(20);
    QVERIFY(bench.widget.devicePixelRatioF() > 1.0);
    if (offset != 0)
        bench.dragTo(offset);
    const QImage kept = pictureOf(bench.bar());
    QCOMPARE(kept.size(), (QSizeF(bench.bar().size()) * bench.bar().devicePixelRatioF()).toSize());

    bench.bar().setMovable(true); // Such a bar is painted every time.
    const QImage painted = pictureOf(bench.bar());
    QCOMPARE(kept.size(), painted.size());
    QVERIFY(difference(kept, painted) <= 2); // Layers that are put together in another order are rounded otherwise.
}

int main(int argc, char **argv)
{
    int failures = 0;
    for (const char *ratio : {"2", "1.5"}) {
        qputenv("QT_SCALE_FACTOR", ratio);
        QApplication application(argc, argv);
        tst_TabWidgetRatio test;
        failures += runKelTest(&test, application.arguments());
    }
    return failures;
}

#include "tst_tabwidgetratio.moc"
