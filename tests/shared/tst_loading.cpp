#include "testmain.h"

#include <QProcess>
#include <QTemporaryFile>

class tst_Loading : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void whatIsOpenedIsSeen();
    void loadingOpensNothing();
};

static QStringList linesOf(const QStringList &arguments)
{
    QProcess process;
    process.setProcessChannelMode(QProcess::ForwardedErrorChannel);
    process.start(QStringLiteral(KEL_LOAD_CHECK), arguments);
    if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit || process.exitCode() != 0)
        return {QStringLiteral("the program failed")};
    return QString::fromLocal8Bit(process.readAllStandardOutput().trimmed()).split(QLatin1Char('\n'));
}

static const QString NothingMore = QStringLiteral("0 descriptors more, 0 threads more");

void tst_Loading::whatIsOpenedIsSeen()
{
    QTemporaryFile file;
    QVERIFY(file.open());
    QCOMPARE(linesOf({QStringLiteral("--open"), file.fileName()}),
             (QStringList{QStringLiteral("opened ") + file.fileName(),
                          QStringLiteral("1 descriptors more, 0 threads more")}));
}

void tst_Loading::loadingOpensNothing()
{
    QCOMPARE(linesOf({QStringLiteral(KEL_LIBRARY)}), QStringList(NothingMore));
}

KEL_TEST_MAIN(tst_Loading)
#include "tst_loading.moc"
