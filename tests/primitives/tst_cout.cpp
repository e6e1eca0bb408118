#include "stderrcapture.h"
#include "testmain.h"

#include <picout.h>
#include <piqt.h>
#include <pivariant.h>

#include <sys/socket.h>
#include <thread>
#include <unistd.h>
#include <vector>

class tst_Cout : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void writesOneLineToStandardError();
    void printsEveryKind();
    void printsBytesInHexadecimal();
    void emptyItemsLeaveNoTrace();
    void lineBreaksStayInTheLine();
    void lineIsOneWrite();
    void linesOfSeveralThreadsStayWhole();
    void closedStandardErrorIsHarmless();
};

void tst_Cout::writesOneLineToStandardError()
{
    const StderrCapture capture;
    PICout(piDebug) << "sended" << 5;
    QCOMPARE(capture.lines(), QStringList{"sended 5"});
}

void tst_Cout::printsEveryKind()
{
    const StderrCapture capture;
    PICout(piDebug) << "text" << std::string("std") << PIString("я") << QStringLiteral("qt") << 'c' << true << false
                    << -1 << 2u << 3000000000LL << 2.5 << 0.1f << static_cast<unsigned char>(7) << PIVariant(1.25);
    QCOMPARE(capture.lines(), QStringList{"text std я qt c true false -1 2 3000000000 2.5 0.100000001490116 7 1.25"});
}

void tst_Cout::printsBytesInHexadecimal()
{
    const StderrCapture capture;
    PICout(piDebug) << "sended" << PIByteArray("\xAA\x05\x2C\x00", 4);
    QCOMPARE(capture.lines(), QStringList{"sended AA 05 2C 00"});
}

void tst_Cout::emptyItemsLeaveNoTrace()
{
    const StderrCapture capture;
    PICout(piDebug) << PIString() << "received"
                    << "" << PIByteArray() << static_cast<const char *>(nullptr) << "end";
    QCOMPARE(capture.lines(), QStringList{"received end"});
}

void tst_Cout::lineBreaksStayInTheLine()
{
    const StderrCapture capture;
    PICout(piDebug) << "a\nb" << PIString("c\r\nd");
    QCOMPARE(capture.lines(), QStringList{"a\\nb c\\r\\nd"});
}

// A datagram socket keeps the writes apart, so what arrives first must be the whole line.
void tst_Cout::lineIsOneWrite()
{
    int ends[2];
    QCOMPARE(::socketpair(AF_UNIX, SOCK_DGRAM, 0, ends), 0);
    {
        const StderrCapture restoresAtTheEnd;
        ::dup2(ends[1], STDERR_FILENO);
        PICout(piDebug) << "sended" << PIByteArray("\xAA\x05", 2);
    }
    char packet[100];
    const ssize_t size = ::recv(ends[0], packet, sizeof(packet), MSG_DONTWAIT);
    const ssize_t rest = ::recv(ends[0], packet + 50, 50, MSG_DONTWAIT);
    ::close(ends[0]);
    ::close(ends[1]);
    QVERIFY(size > 0);
    QCOMPARE(QByteArray(packet, int(size)), QByteArray("sended AA 05\n"));
    QCOMPARE(int(rest), -1);
}

void tst_Cout::linesOfSeveralThreadsStayWhole()
{
    const StderrCapture capture;
    const PIByteArray block(std::string(200, '\x55').data(), 200);
    std::vector<std::thread> threads;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (int n = 0; n < 500; ++n)
                PICout(piDebug) << "sended" << block << "end";
        });
    }
    for (std::thread &thread : threads)
        thread.join();

    QStringList lines = capture.lines();
    QCOMPARE(lines.size(), 2000);
    lines.removeDuplicates();
    QCOMPARE(lines.size(), 1);
    QVERIFY(lines.first().startsWith("sended 55 55"));
    QVERIFY(lines.first().endsWith("55 end"));
}

void tst_Cout::closedStandardErrorIsHarmless()
{
    const StderrCapture capture; // puts standard error back at the end
    ::close(STDERR_FILENO);
    PICout(piDebug) << "lost";
    QVERIFY(capture.lines().isEmpty());
}

KEL_TEST_MAIN(tst_Cout)
#include "tst_cout.moc"
