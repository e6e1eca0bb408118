#include "testmain.h"

#include <picrypt.h>

#include <QRegularExpression>

#include <set>

class tst_Crypt : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void givesTheSizeAskedFor();
    void givesOtherBytesEachTime();
    void usesEveryByteValue();
    void namesItsVersion();
};

void tst_Crypt::givesTheSizeAskedFor()
{
    QCOMPARE(PICrypt::generateRandomBuff(4).size(), 4);
    QCOMPARE(PICrypt::generateRandomBuff(100000).size(), 100000);
    QVERIFY(PICrypt::generateRandomBuff(0).isEmpty());
    QVERIFY(PICrypt::generateRandomBuff(-1).isEmpty());
}

void tst_Crypt::givesOtherBytesEachTime()
{
    QVERIFY(PICrypt::generateRandomBuff(16) != PICrypt::generateRandomBuff(16));
}

void tst_Crypt::usesEveryByteValue()
{
    const PIByteArray bytes = PICrypt::generateRandomBuff(65536);
    const std::set<unsigned char> values(bytes.begin(), bytes.end());
    QCOMPARE(int(values.size()), 256);
}

void tst_Crypt::namesItsVersion()
{
    const QRegularExpression version(QStringLiteral("^\\d+\\.\\d+"));
    QVERIFY(version.match(PICrypt::version().toUtf16()).hasMatch());
}

KEL_TEST_MAIN(tst_Crypt)
#include "tst_crypt.moc"
