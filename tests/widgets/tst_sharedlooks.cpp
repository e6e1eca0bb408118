#include "testmain.h"

#include <sharedlooks.h>

/// What widgets that look alike make once.
class tst_SharedLooks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void cleanup();
    void keptIsFound();
    void anotherLookIsNotFound();
    void newestIsKept();
    void memoryIsBounded();
    void whatIsTooLargeIsNotKept();
    void largestThatIsKept();
    void otherFontsLeaveNothing();
};

namespace
{

constexpr int MostKibibytes = 4 * 1024;

using Names = SharedLooks<int, QString>;
using Sizes = SharedLooks<int, qreal>;

QString nameOf(int look)
{
    const QString *name = Names::find(look);
    return name ? *name : QString();
}

} // namespace

void tst_SharedLooks::cleanup()
{
    emit qGuiApp->fontDatabaseChanged();
}

void tst_SharedLooks::keptIsFound()
{
    QVERIFY(!Names::find(1));
    Names::keep(1, "one", 1);
    Names::keep(2, "two", 1);
    QCOMPARE(nameOf(1), QString("one"));
    QCOMPARE(nameOf(2), QString("two"));
}

void tst_SharedLooks::anotherLookIsNotFound()
{
    Names::keep(1, "one", 1);
    QVERIFY(!Names::find(2));
    QVERIFY(!Sizes::find(1)); // nor the same look of something else
}

void tst_SharedLooks::newestIsKept()
{
    Names::keep(1, "one", 1);
    Names::keep(1, "first", 1);
    QCOMPARE(nameOf(1), QString("first"));
}

void tst_SharedLooks::memoryIsBounded()
{
    for (int look = 0; look < 5; ++look)
        Names::keep(look, QString::number(look), MostKibibytes / 4);
    QVERIFY(!Names::find(0));
    for (int look = 1; look < 5; ++look)
        QCOMPARE(nameOf(look), QString::number(look));

    // What costs nothing counts as well, or there would be no end of it.
    for (int look = 0; look <= MostKibibytes; ++look)
        Sizes::keep(look, 1.0, 0);
    QVERIFY(!Sizes::find(0));
    QVERIFY(Sizes::find(1));
}

void tst_SharedLooks::whatIsTooLargeIsNotKept()
{
    Names::keep(1, "one", MostKibibytes + 1);
    QVERIFY(!Names::find(1));
}

void tst_SharedLooks::largestThatIsKept()
{
    Names::keep(1, "one", MostKibibytes);
    QCOMPARE(nameOf(1), QString("one"));
}

void tst_SharedLooks::otherFontsLeaveNothing()
{
    Names::keep(1, "one", 1);
    Sizes::keep(1, 1.0, 1);
    emit qGuiApp->fontDatabaseChanged();
    QVERIFY(!Names::find(1));
    QVERIFY(!Sizes::find(1));
}

// Nothing outlives an application, and the next one works as the first.
int main(int argc, char **argv)
{
    int failures = 0;
    for (int run = 0; run < 2; ++run) {
        {
            QApplication application(argc, argv);
            tst_SharedLooks test;
            failures += runKelTest(&test, application.arguments());
            Names::keep(run, "left behind", 1);
        }
        if (Names::find(run)) {
            qWarning("something outlives the application");
            ++failures;
        }
    }
    return failures;
}

#include "tst_sharedlooks.moc"
