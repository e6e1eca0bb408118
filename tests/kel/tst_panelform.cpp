#include "testmain.h"

#include <panelform.h>

class tst_PanelForm : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void badFormIsRefused_data();
    void badFormIsRefused();
    void deepFormIsRefusedAtOnce();
    void manyWidgetsAreRefused();
    void largeFileIsRefused();
    void connectionsAreKeptBack();
    void everythingElseStays();
};

namespace
{

PanelForm formOf(const QByteArray &text)
{
    return PanelForm::fromText(text, QStringLiteral("x.ui"), {QStringLiteral("QWidget"), QStringLiteral("KelButton")});
}

} // namespace

void tst_PanelForm::badFormIsRefused_data()
{
    QTest::addColumn<QByteArray>("text");
    QTest::addColumn<QString>("error");

    const auto row = [](const char *name, const char *text, const char *error) {
        QTest::newRow(name) << QByteArray(text) << QString::fromLatin1(error);
    };
    row("empty", "", "x.ui:1: Premature end of document.");
    row("no XML", "SQLite format 3", "x.ui:1: Start tag expected.");
    row("cut off", "<ui>\n<widget class='QWidget'>", "x.ui:2: Premature end of document.");
    row("other XML", "<html><p/></html>", "x.ui:1: not a form: it begins with <html>");
    row("no widget", "<ui></ui>", "x.ui:1: there is no widget in it");
    row("unknown class", "<ui>\n <widget class=\"Thermostat\"/></ui>", "x.ui:2: unknown widget class \"Thermostat\"");
    row("unknown class inside", "<ui><widget class='QWidget'>\n\n<widget class='X'/></widget></ui>",
        "x.ui:3: unknown widget class \"X\"");
    row("widget without class", "<ui><widget/></ui>", "x.ui:1: unknown widget class \"\"");
    row("huge grid",
        "<ui><widget class='QWidget'><layout class='QGridLayout'><item row='2000000000'/></layout></widget></ui>",
        "x.ui:1: row \"2000000000\" is not up to 1000");
    row("cell that is no number",
        "<ui><widget class='QWidget'><layout><item row='1' colspan='x'/></layout></widget></ui>",
        "x.ui:1: colspan \"x\" is not up to 1000");
    row("document type", "<!DOCTYPE ui [<!ENTITY a 'b'>]><ui/>", "x.ui:1: a form has no document type");
}

void tst_PanelForm::badFormIsRefused()
{
    QFETCH(QByteArray, text);
    QFETCH(QString, error);

    const PanelForm form = formOf(text);
    QCOMPARE(form.error, error);
    QVERIFY(form.text.isEmpty());
}

void tst_PanelForm::deepFormIsRefusedAtOnce()
{
    QByteArray text = "<ui>";
    for (int i = 0; i < 100000; ++i)
        text += "<widget class='QWidget'>";
    QCOMPARE(formOf(text).error, QStringLiteral("x.ui:1: more than 200 elements inside each other"));
}

void tst_PanelForm::manyWidgetsAreRefused()
{
    QByteArray text = "<ui><widget class='QWidget'>";
    for (int i = 0; i < PanelForm::MaxWidgets; ++i)
        text += "<widget class='QWidget'/>";
    QCOMPARE(formOf(text + "</widget></ui>").error, QStringLiteral("x.ui:1: more than 10000 widgets"));
}

void tst_PanelForm::largeFileIsRefused()
{
    const QByteArray text(PanelForm::MaxSize + 1, ' ');
    QCOMPARE(formOf(text).error, QStringLiteral("x.ui: larger than 16 MiB, so hardly a form"));
}

void tst_PanelForm::connectionsAreKeptBack()
{
    const PanelForm form = formOf("<ui><widget class='QWidget'/>\n<connections>"
                                  "<connection><sender>a</sender><signal>s(int)</signal><receiver>b</receiver>"
                                  "<slot>t(int)</slot><hints><hint type='x'><x>1</x></hint></hints></connection>"
                                  "<other/><connection/></connections></ui>");
    QCOMPARE(form.error, QString());
    QCOMPARE(form.connections.size(), 2);
    QCOMPARE(form.connections.at(0).sender, QStringLiteral("a"));
    QCOMPARE(form.connections.at(0).signal, QStringLiteral("s(int)"));
    QCOMPARE(form.connections.at(0).receiver, QStringLiteral("b"));
    QCOMPARE(form.connections.at(0).slot, QStringLiteral("t(int)"));
    QCOMPARE(form.connections.at(0).line, 2);
    QVERIFY(!form.text.contains("connection"));
}

void tst_PanelForm::everythingElseStays()
{
    const PanelForm form = formOf("<?xml version='1.0'?><ui version=\"4.0\"><class>X</class>"
                                  "<widget class=\"KelButton\" name=\"b\"><property name=\"text\">"
                                  "<string>1 &lt; 2</string></property></widget></ui>");
    QCOMPARE(form.error, QString());
    QVERIFY(form.text.contains("<widget class=\"KelButton\" name=\"b\"><property name=\"text\">"
                               "<string>1 &lt; 2</string></property></widget></ui>"));
}

KEL_TEST_MAIN(tst_PanelForm)
#include "tst_panelform.moc"
