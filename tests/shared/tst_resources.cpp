#include "testmain.h"

#include <QIcon>
#include <initabout.h>

int qInitResources_shared();
int qCleanupResources_shared();

// A host may take the resource set away and bring it back by name.
class tst_Resources : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void setComesAndGoes();
    void aboutRegistersTheSet();
};

static bool hasIcon()
{
    return QFile::exists(QStringLiteral(":/icons/kel.png"));
}

void tst_Resources::setComesAndGoes()
{
    qInitResources_shared();
    QVERIFY(hasIcon());
    const QImage icon(QStringLiteral(":/icons/kel.png"));
    QCOMPARE(icon.size(), QSize(128, 128));
    QCOMPARE(qAlpha(icon.pixel(0, 0)), 0);
    QCOMPARE(qAlpha(icon.pixel(64, 64)), 255);

    qCleanupResources_shared();
    QVERIFY(!hasIcon());
    qInitResources_shared();
    QVERIFY(hasIcon());
}

void tst_Resources::aboutRegistersTheSet()
{
    qCleanupResources_shared();
    QVERIFY(!hasIcon());
    initAbout();
    QVERIFY(hasIcon());
}

KEL_TEST_MAIN(tst_Resources)
#include "tst_resources.moc"
