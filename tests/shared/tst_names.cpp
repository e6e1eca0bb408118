#include "testmain.h"

#include <names.h>

class tst_Names : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void toCName_data();
    void toCName();
    void isCName_data();
    void isCName();
};

void tst_Names::toCName_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("result");

    QTest::newRow("empty stays empty") << QString() << QString();
    QTest::newRow("blank becomes empty") << QStringLiteral(" \t\n ") << QString();
    QTest::newRow("identifier stays") << QStringLiteral("_x") << QStringLiteral("_x");
    QTest::newRow("trimmed, replaced, prefixed") << QStringLiteral("  1st value.x ") << QStringLiteral("_1st_value_x");
    QTest::newRow("all five characters") << QStringLiteral("a:b,c.d e\tf") << QStringLiteral("a_b_c_d_e_f");
    QTest::newRow("inner line break stays") << QStringLiteral("a\nb") << QStringLiteral("a\nb");
    QTest::newRow("no-break space stays") << QStringLiteral("a\u00A0b") << QStringLiteral("a\u00A0b");
    QTest::newRow("other punctuation stays") << QStringLiteral("a-b;c/d") << QStringLiteral("a-b;c/d");
    QTest::newRow("dash in front is prefixed") << QStringLiteral("-a") << QStringLiteral("_-a");
    QTest::newRow("replaced first character counts as _") << QStringLiteral(".a") << QStringLiteral("_a");
    QTest::newRow("letter of another alphabet may begin") << QStringLiteral("я1") << QStringLiteral("я1");
    QTest::newRow("digit of another alphabet may not") << QStringLiteral("٣a") << QStringLiteral("_٣a");
    QTest::newRow("letter beyond 16 bits is no letter") << QStringLiteral("𝒜b") << QStringLiteral("_𝒜b");
}

void tst_Names::toCName()
{
    QFETCH(QString, text);
    QFETCH(QString, result);

    QCOMPARE(::toCName(text), result);
}

void tst_Names::isCName_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<bool>("result");

    QTest::newRow("empty") << QString() << false;
    QTest::newRow("blank") << QStringLiteral("  ") << false;
    QTest::newRow("trimmed before the test") << QStringLiteral(" abc\t") << true;
    QTest::newRow("underscore alone") << QStringLiteral("_") << true;
    QTest::newRow("capital, digits, underscore") << QStringLiteral("Z_09a") << true;
    QTest::newRow("dash") << QStringLiteral("a-b") << false;
    QTest::newRow("digit first") << QStringLiteral("9a") << false;
    QTest::newRow("space inside") << QStringLiteral("a b") << false;
    QTest::newRow("letters of another alphabet") << QStringLiteral("яблоко") << true;
    QTest::newRow("decimal digit of another alphabet") << QStringLiteral("a٣") << true;
    QTest::newRow("decimal digit of another alphabet first") << QStringLiteral("٣a") << false;
    QTest::newRow("superscript two is no decimal digit") << QStringLiteral("a²") << false;
    QTest::newRow("roman numeral is no decimal digit") << QStringLiteral("aⅣ") << false;
    QTest::newRow("combining mark") << QStringLiteral("a\u0301") << false;
    QTest::newRow("letter beyond 16 bits") << QStringLiteral("𝒜") << false;
}

void tst_Names::isCName()
{
    QFETCH(QString, text);
    QFETCH(bool, result);

    QCOMPARE(::isCName(text), result);
}

KEL_TEST_MAIN(tst_Names)
#include "tst_names.moc"
