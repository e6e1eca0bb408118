#include "testmain.h"

#include <QClipboard>
#include <QGroupBox>
#include <QLabel>
#include <QPushButton>
#include <QScreen>
#include <aboutwindow.h>

class tst_AboutWindow : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase();
    void linesKeepTheirOrderAndAreNotMerged();
    void dialogShowsBothLists();
    void laterLinesDoNotChangeAnOpenDialog();
    void textIsShownToTheLetter();
    void headingNamesTheApplication();
    void copyGivesAllLines();
    void manyLinesFitOnTheScreen();
};

using Lines = AboutWindow::Lines;

// Texts of all labels below the group box with this title.
static QStringList shown(const AboutWindow &window, const QString &title)
{
    QStringList texts;
    const auto boxes = window.findChildren<QGroupBox *>();
    for (const QGroupBox *box : boxes) {
        if (box->title() != title || box->isHidden())
            continue;
        const auto labels = box->findChildren<QLabel *>();
        for (const QLabel *label : labels)
            texts << label->text();
    }
    return texts;
}

// The lists belong to the process, so this test comes first and its lines stay for the others.
void tst_AboutWindow::initTestCase()
{
    QVERIFY(AboutWindow::versions().isEmpty());
    QVERIFY(AboutWindow::buildInfo().isEmpty());
    QVERIFY(shown(AboutWindow(), QStringLiteral("Versions")).isEmpty());

    AboutWindow::addVersion(QStringLiteral("Library"), QStringLiteral("1.0"));
    AboutWindow::addVersion(QStringLiteral("Another"), QStringLiteral("0.9"));
    AboutWindow::addBuildInfo(QStringLiteral("Arch"), QStringLiteral("z80"));
}

void tst_AboutWindow::linesKeepTheirOrderAndAreNotMerged()
{
    const Lines before = AboutWindow::versions();
    QCOMPARE(before, Lines({{"Library", "1.0"}, {"Another", "0.9"}}));
    QCOMPARE(AboutWindow::buildInfo(), Lines({{"Arch", "z80"}}));

    AboutWindow::addVersion(QStringLiteral("Library"), QStringLiteral("1.0"));
    AboutWindow::addBuildInfo(QStringLiteral("Arch"), QStringLiteral("z80"));
    QCOMPARE(AboutWindow::versions(), before + Lines({{"Library", "1.0"}}));
    QCOMPARE(AboutWindow::buildInfo(), Lines({{"Arch", "z80"}, {"Arch", "z80"}}));
}

void tst_AboutWindow::dialogShowsBothLists()
{
    const AboutWindow window;
    QCOMPARE(shown(window, QStringLiteral("Versions")),
             QStringList({"Library", "1.0", "Another", "0.9", "Library", "1.0"}));
    QCOMPARE(shown(window, QStringLiteral("Build")), QStringList({"Arch", "z80", "Arch", "z80"}));
}

void tst_AboutWindow::laterLinesDoNotChangeAnOpenDialog()
{
    const AboutWindow window;
    const QString before = window.plainText();
    AboutWindow::addVersion(QStringLiteral("Late"), QStringLiteral("2"));
    QCOMPARE(window.plainText(), before);
    QVERIFY(AboutWindow().plainText().contains(QStringLiteral("Late: 2\n")));
}

void tst_AboutWindow::textIsShownToTheLetter()
{
    AboutWindow::addVersion(QStringLiteral("<b>&x</b>"), QStringLiteral("<i>1</i>"));
    const AboutWindow window;
    const auto labels = window.findChildren<QLabel *>();
    for (const QLabel *label : labels) {
        if (!label->text().isEmpty())
            QCOMPARE(label->textFormat(), Qt::PlainText);
    }
    QVERIFY(shown(window, QStringLiteral("Versions")).contains(QStringLiteral("<b>&x</b>")));
}

void tst_AboutWindow::headingNamesTheApplication()
{
    QGuiApplication::setApplicationDisplayName(QStringLiteral("Hall panel"));
    QCoreApplication::setApplicationVersion(QStringLiteral("7.1"));
    const AboutWindow window;
    QCOMPARE(window.windowTitle(), QStringLiteral("About Hall panel"));
    QStringList texts;
    const auto labels = window.findChildren<QLabel *>();
    for (const QLabel *label : labels)
        texts << label->text();
    QVERIFY(texts.contains(QStringLiteral("Hall panel")));
    QVERIFY(texts.contains(QStringLiteral("7.1")));
}

void tst_AboutWindow::copyGivesAllLines()
{
    AboutWindow window;
    QCOMPARE(window.plainText().section("\n\n", 0, 0).section('\n', 0, 1),
             QStringLiteral("Library: 1.0\nAnother: 0.9"));
    QCOMPARE(window.plainText().section("\n\n", 1), QStringLiteral("Arch: z80\nArch: z80\n"));

    window.show();
    const auto buttons = window.findChildren<QPushButton *>();
    for (QPushButton *button : buttons) {
        if (button->text().remove('&') == QStringLiteral("Copy"))
            button->click();
    }
    QCOMPARE(QGuiApplication::clipboard()->text(), window.plainText());
    QVERIFY(window.isVisible());

    QTest::keyClick(&window, Qt::Key_Escape);
    QVERIFY(!window.isVisible());
}

void tst_AboutWindow::manyLinesFitOnTheScreen()
{
    for (int i = 0; i < 200; ++i)
        AboutWindow::addBuildInfo(QString::number(i), QStringLiteral("line"));
    AboutWindow window;
    window.show();
    QVERIFY(window.height() <= window.screen()->availableSize().height());
}

KEL_TEST_MAIN(tst_AboutWindow)
#include "tst_aboutwindow.moc"
