#include "kelprocess.h"
#include "testmain.h"

#include <command.h>
#include <panel/panelclicks.h>

#include <QPushButton>
#include <QTemporaryDir>

/// Buttons that are pressed without a finger, and what somebody is told who runs a panel for the first time.
class tst_PanelClicks : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buttonsAreClickedInOrder();
    void nameOfNoButton();
    void panelWithoutCatalogueIsTold();
    void sourceInPlaceOfACatalogueIsTold();
    void commandThatIsNone();

private:
    QTemporaryDir m_folder;
};

static const QString Form = QStringLiteral(KEL_SOURCE_DIR "/examples/workshop/workshop.ui");

void tst_PanelClicks::buttonsAreClickedInOrder()
{
    QWidget panel;
    QStringList clicked;
    for (const char *name : {"first", "second"}) {
        auto *button = new QPushButton(&panel);
        button->setObjectName(QLatin1String(name));
        connect(button, &QPushButton::clicked, this, [&clicked, name] { clicked << QLatin1String(name); });
    }
    clickButtons(panel, {QStringLiteral("second"), QStringLiteral("first"), QStringLiteral("second")});
    QCOMPARE(clicked, QStringList());
    QTRY_COMPARE(clicked.size(), 3);
    QCOMPARE(clicked.join(QLatin1Char(' ')), QStringLiteral("second first second"));
}

void tst_PanelClicks::nameOfNoButton()
{
    QWidget panel;
    auto *label = new QWidget(&panel);
    label->setObjectName(QStringLiteral("label"));
    for (const char *name : {"nobody", "label"}) {
        try {
            clickButtons(panel, {QLatin1String(name)});
            QFAIL("it was clicked");
        } catch (const CommandError &error) {
            QCOMPARE(QByteArray(error.what()), QByteArray("the panel has no button \"") + name + "\" to click");
        }
    }
}

void tst_PanelClicks::panelWithoutCatalogueIsTold()
{
    QFile form(m_folder.filePath(QStringLiteral("a.ui")));
    QVERIFY(form.open(QIODevice::WriteOnly));
    form.write("<ui version='4.0'><widget class='QWidget' name='w'><widget class='LocalDevice' name='d'><property "
               "name='currentID'><number>1</number>"
               "</property></widget></widget></ui>");
    form.close();
    const KelRun run = runKel({QStringLiteral("panel"), form.fileName(), QStringLiteral("--screenshot"),
                               m_folder.filePath(QStringLiteral("a.png")), QStringLiteral("--after=0")});
    QCOMPARE(run.exitCode, 0);
    QVERIFY2(run.errors.contains("kel: without a catalogue (--db) the devices know no command and no answer\n"),
             run.errors.constData());
}

void tst_PanelClicks::sourceInPlaceOfACatalogueIsTold()
{
    const QString source = QStringLiteral(KEL_SOURCE_DIR "/examples/workshop/workshop.toml");
    const KelRun panel = runKel({QStringLiteral("panel"), Form, QStringLiteral("--db"), source});
    QCOMPARE(panel.exitCode, 1);
    QCOMPARE(panel.errorLines().size(), 1);
    QVERIFY2(panel.errors.contains("workshop.toml: the source of a catalogue; "), panel.errors.constData());
}

void tst_PanelClicks::commandThatIsNone()
{
    const KelRun wrong = runKel({QStringLiteral("panl"), Form});
    QCOMPARE(wrong.exitCode, 2);
    QCOMPARE(wrong.errors, QByteArray("kel: there is no command \"panl\" (kel --help tells more)\n"));
    const KelRun none = runKel({});
    QCOMPARE(none.exitCode, 2);
    QCOMPARE(none.errorLines().size(), 1);
}

KEL_TEST_MAIN(tst_PanelClicks)
#include "tst_panelclicks.moc"
