#include "testmain.h"

#include <graphicvariable.h>

class tst_GraphicVariable : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void readsAndWrites_data();
    void readsAndWrites();
};

void tst_GraphicVariable::readsAndWrites_data()
{
    QTest::addColumn<QString>("text");
    QTest::addColumn<QString>("left");
    QTest::addColumn<QString>("right");
    QTest::addColumn<QString>("written");

    const auto row = [](const char *name, const char *text, const char *left, const char *right, const char *written) {
        QTest::newRow(name) << QString::fromUtf8(text) << QString::fromUtf8(left) << QString::fromUtf8(right)
                            << QString::fromUtf8(written);
    };
    row("plain", "T1=Temperature", "T1", "Temperature", "T1=Temperature");
    row("blanks around both sides", "  T1 = Temperature ", "T1", "Temperature", "T1=Temperature");
    row("tabs and line breaks are blanks too", "\tT1\n=\r\nTemperature\t", "T1", "Temperature", "T1=Temperature");
    row("blanks inside stay", "hall top = Temperature at the top", "hall top", "Temperature at the top",
        "hall top=Temperature at the top");
    row("the first sign splits", "a=b=c", "a", "b=c", "a=b=c");
    row("two signs in a row", "a==", "a", "=", "a==");
    row("no sign", "x", "x", "x", "x=x");
    row("no sign: blanks stay", "  x ", "  x ", "  x ", "  x =  x ");
    row("sign at the front", "=x", "=x", "=x", "=x==x");
    row("sign at the front: blanks stay", "= x ", "= x ", "= x ", "= x == x ");
    row("sign at the front, another behind", "=x=y", "=x=y", "=x=y", "=x=y==x=y");
    row("a blank before the sign is a left side", " =x", "", "x", "=x");
    row("nothing right", "x=", "x", "", "x=");
    row("the sign alone", "=", "=", "=", "===");
    row("nothing", "", "", "", "=");
    row("blanks alone", "  ", "  ", "  ", "  =  ");
    row("other letters", "t°=Wärme", "t°", "Wärme", "t°=Wärme");
}

void tst_GraphicVariable::readsAndWrites()
{
    QFETCH(QString, text);
    QFETCH(QString, left);
    QFETCH(QString, right);
    QFETCH(QString, written);

    const GraphicVariable variable = GraphicVariable::fromText(text);
    QCOMPARE(variable.left, left);
    QCOMPARE(variable.right, right);
    QCOMPARE(variable.text(), written);
}

KEL_TEST_MAIN(tst_GraphicVariable)
#include "tst_graphicvariable.moc"
