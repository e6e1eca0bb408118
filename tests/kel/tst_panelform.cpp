#include "testmain.h"

#include <panel/formlimits.h>
#include <panel/panelform.h>

class tst_PanelForm : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void badFormIsRefused_data();
    void badFormIsRefused();
    void deepFormIsRefusedAtOnce();
    void manyWidgetsAreRefused();
    void largeTablesAreRefused();
    void usualNumbersPass_data();
    void usualNumbersPass();
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
        "<ui><widget class='QWidget'><layout class='QGridLayout'><item row='1' colspan='x'/></layout></widget></ui>",
        "x.ui:1: colspan \"x\" is not up to 1000");
    row("cell before the first",
        "<ui><widget class='QWidget'><layout class='QGridLayout'><item row='-1' column='0'/></layout></widget></ui>",
        "x.ui:1: row \"-1\" is not up to 1000");
    row("unknown layout", "<ui><widget class='QWidget'>\n<layout class='QHeapLayout'/></widget></ui>",
        "x.ui:2: unknown layout \"QHeapLayout\"");
    row("unknown class in capitals", "<UI><WIDGET class='Thermostat'/></UI>",
        "x.ui:1: unknown widget class \"Thermostat\"");
    const auto property = [&](const char *name, const char *property, const char *error) {
        const QByteArray text = "<ui><widget class='QWidget'>" + QByteArray(property) + "</widget></ui>";
        row(name, text.constData(), error);
    };
    property("table of many rows", "<property name='rowCount'><number>2000000000</number></property>",
             "x.ui:1: rowCount \"2000000000\" is not up to 1000");
    property("tree of many columns", "<property name='columnCount'><number>1001</number></property>",
             "x.ui:1: columnCount \"1001\" is not up to 1000");
    property("table of less than no row", "<property name='rowCount'><number>-1</number></property>",
             "x.ui:1: rowCount \"-1\" is not up to 1000");
    property("number in pieces", "<property name='rowCount'><number>2<![CDATA[000]]>000</number></property>",
             "x.ui:1: rowCount \"2000000\" is not up to 1000");
    property("number in capitals", "<PROPERTY name='rowCount'><NUMBER>5000</NUMBER></PROPERTY>",
             "x.ui:1: rowCount \"5000\" is not up to 1000");
    property("wide widget", "<property name='geometry'><rect><width>10001</width></rect></property>",
             "x.ui:1: geometry \"10001\" is not up to 10000");
    property("widget that may not be small",
             "<property name='minimumSize'><size><height>1e9</height></size></property>",
             "x.ui:1: minimumSize \"1e9\" is not up to 10000");
    property("wide spacer", "<spacer><property name='sizeHint'><size><width>20000</width></size></property></spacer>",
             "x.ui:1: sizeHint \"20000\" is not up to 10000");
    property("wide margin",
             "<layout class='QVBoxLayout'><property name='leftMargin'><number>99999</number></property></layout>",
             "x.ui:1: leftMargin \"99999\" is not up to 10000");
    property("letters like houses", "<property name='font'><font><pointsize>5000</pointsize></font></property>",
             "x.ui:1: pointsize \"5000\" is not up to 1000");
    property("slider with a mark at each step",
             "<property name='maximum'><number>2000000000</number></property>"
             "<property name='tickPosition'><enum>QSlider::TicksBelow</enum></property>",
             "x.ui:1: more than 100000 ticks beside a slider");
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
    for (int i = 0; i < FormLimits::MaxWidgets; ++i)
        text += "<widget class='QWidget'/>";
    QCOMPARE(formOf(text + "</widget></ui>").error, QStringLiteral("x.ui:1: more than 10000 widgets"));
}

void tst_PanelForm::largeTablesAreRefused()
{
    const QByteArray table = "<widget class='QWidget'><property name='rowCount'><number>1000</number></property>"
                             "<property name='columnCount'><number>600</number></property></widget>";
    QCOMPARE(formOf("<ui>" + table + "</ui>").error, QString());
    QCOMPARE(formOf("<ui>" + table + table + "</ui>").error, QStringLiteral("x.ui:1: more than 1000000 table cells"));

    QByteArray rows = "<ui><widget class='QWidget'>";
    for (int i = 0; i <= FormLimits::MaxCell; ++i)
        rows += "<row/>";
    QCOMPARE(formOf(rows + "</widget></ui>").error, QStringLiteral("x.ui:1: more than 1000 rows"));
    rows.replace("<row/>", "<column/>");
    QCOMPARE(formOf(rows + "</widget></ui>").error, QStringLiteral("x.ui:1: more than 1000 columns"));
}

void tst_PanelForm::usualNumbersPass_data()
{
    QTest::addColumn<QByteArray>("property");
    QTest::newRow("largest size as Designer writes it")
        << QByteArray("<property name='maximumSize'><size><width>16777215</width><height>16777215</height></size>"
                      "</property>");
    QTest::newRow("margin of the style") << QByteArray("<property name='leftMargin'><number>-1</number></property>");
    QTest::newRow("font of the parent") << QByteArray(
        "<property name='font'><font><pointsize>-1</pointsize></font></property>");
    QTest::newRow("wide range without marks")
        << QByteArray("<property name='maximum'><number>2147483647</number></property>");
    QTest::newRow("wide range with few marks")
        << QByteArray("<property name='maximum'><number>2000000000</number></property><property name='tickPosition'>"
                      "<enum>QSlider::TicksBelow</enum></property><property name='tickInterval'><number>100000000"
                      "</number></property>");
    QTest::newRow("wide range whose marks are off")
        << QByteArray("<property name='maximum'><number>2000000000</number></property><property name='tickPosition'>"
                      "<enum>QSlider::NoTicks</enum></property>");
    QTest::newRow("left of the screen") << QByteArray(
        "<property name='geometry'><rect><x>-20</x><y>0</y></rect></property>");
    QTest::newRow("span to the edge") << QByteArray(
        "<layout class='QGridLayout'><item row='0' column='0' rowspan='-1' colspan='-1'/></layout>");
}

void tst_PanelForm::usualNumbersPass()
{
    QFETCH(QByteArray, property);
    QCOMPARE(formOf("<ui><widget class='QWidget'>" + property + "</widget></ui>").error, QString());
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
