#include "localdevice.h"

#include "builtinpicture.h"

#include <picout.h>
#include <piqt.h>

#include <QDebug>
#include <QLabel>
#include <QPainter>
#include <QPointer>
#include <QScrollArea>
#include <QShowEvent>
#include <QVBoxLayout>

#include <utility>

namespace
{

constexpr int IconSize = 48;
constexpr int IconRightMargin = 28; ///< Leaves room for the status view's scroll bar.
constexpr int IconTop = 8;
constexpr int StatusPeriodMs = 100;
constexpr int CommandTextsLimit = 64 * 1024; ///< Characters of command texts that are kept ready.

QString unknownDevice()
{
    return QStringLiteral("Unknown device");
}

/// Of the same picture for all devices. A running panel shows none of them.
const QImage &deviceIcon()
{
    static const QImage icon =
        readBuiltInPicture("local_device").scaled(IconSize, IconSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    return icon;
}

/// Keeps its text off a strip at the right, where the device below shows its icon.
class StatusArea : public QScrollArea
{
public:
    explicit StatusArea(int strip) { setViewportMargins(0, 0, strip, 0); }
};

} // namespace

LocalDevice::LocalDevice(QWidget *parent)
    : QWidget(parent)
    , m_commandTexts(CommandTextsLimit)
{
    setToolTip(unknownDevice());
}

LocalDevice::~LocalDevice() = default;

void LocalDevice::setDeviceReadPath(QString path)
{
    readPath = Q2PIString(path);
    m_deviceReadPath = std::move(path);
}

void LocalDevice::setDeviceSendPath(QString path)
{
    sendPath = Q2PIString(path);
    m_deviceSendPath = std::move(path);
}

void LocalDevice::setTwitchGPIO(bool yes)
{
    m_twitchGPIO = yes;
}

void LocalDevice::setTwitchPinNumber(int pin)
{
    m_twitchPinNumber = pin;
}

void LocalDevice::setTwitchPinReadState(bool level)
{
    m_twitchPinReadState = level;
}

void LocalDevice::setTwitchPinSendState(bool level)
{
    m_twitchPinSendState = level;
}

void LocalDevice::enable()
{
    setEnabled(true);
}

void LocalDevice::disable()
{
    setEnabled(false);
}

QSize LocalDevice::sizeHint() const
{
    return {230, 95};
}

void LocalDevice::setArgument(int arg_num, int value)
{
    arguments[arg_num] = value;

    const PIString name = Q2PIString(QLatin1Char('a') + QString::number(arg_num));
    PIEvaluatorContent &content = evaluator.content();
    const int known = content.findVariable(name);
    if (known >= 0) {
        content.setVariableValue(known, value);
    } else {
        content.addVariable(name, value);
        content.sortVariables();
    }
}

void LocalDevice::setArgument0(int value)
{
    setArgument(0, value);
}

void LocalDevice::setArgument1(int value)
{
    setArgument(1, value);
}

void LocalDevice::setArgument2(int value)
{
    setArgument(2, value);
}

void LocalDevice::setArgument3(int value)
{
    setArgument(3, value);
}

void LocalDevice::sendCommand(int cmd_ID)
{
    send(commands.value(cmd_ID));
}

void LocalDevice::sendCommand(QString cmd)
{
    send(std::move(cmd));
}

// Values, as subclasses override the one and a slot may change what the other was called with.
// NOLINTBEGIN(performance-unnecessary-value-param)
void LocalDevice::send(QString text)
{
    if (!isEnabled())
        return;
    sendPrepared(parseSendData(text));
}

void LocalDevice::sendPrepared(PIByteArray data)
{
    if (!isEnabled())
        return;
    const QPointer<LocalDevice> alive(this);
    Q_EMIT sending(data);
    if (alive)
        sendLocal(data);
}
// NOLINTEND(performance-unnecessary-value-param)

void LocalDevice::sendLocal(const PIByteArray &data)
{
    if (!isEnabled())
        return;
    PICout(piDebug) << "sended" << data;
}

PIByteArray LocalDevice::parseSendData(const QString &text)
{
    const auto reportError = [](const QString &error) { qDebug() << "command evaluation error:" << error; };
    return commandText(text).bytes(arguments, deviceID, evaluator, reportError);
}

/// A panel sends the same few texts over and over: each is read once. The copy outlives its place among
/// them, which a handler of debug output that sends something itself could take away.
CommandText LocalDevice::commandText(const QString &text)
{
    if (const CommandText *known = m_commandTexts.object(text))
        return *known;
    CommandText command = CommandText::fromText(text);
    m_commandTexts.insert(text, new CommandText(command), text.size() + 1);
    return command;
}

void LocalDevice::dataReceived(QByteArray data, QString from)
{
    received(std::move(data), std::move(from));
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): values for those who override it
void LocalDevice::received(QByteArray data, QString)
{
    receivedLocal(data);
}

void LocalDevice::receivedLocal(const QByteArray &data)
{
    if (!isEnabled())
        return;
    PICout(piDebug) << readPath << "received" << Q2PIByteArray(data);

    int answerID = 0;
    if (findAnswer(data, answerID))
        announceAnswer(answerID);
}

bool LocalDevice::findAnswer(const QByteArray &message, int &answerID)
{
    // Once for the message, not for each answer: what an answer captured before it failed stays.
    answerArguments.clear();
    if (!m_answerTable.isOf(answers))
        m_answerTable = AnswerTable(answers);
    return m_answerTable.find(message, answerID, answerArguments);
}

void LocalDevice::announceAnswer(int answerID)
{
    ++receivedCount;

    // A slot may hand in the next message, which replaces the member, or delete the device.
    const QPointer<LocalDevice> alive(this);
    const QMap<int, int> values = answerArguments;
    Q_EMIT receivedAnswerID(answerID);
    for (auto it = values.cbegin(); alive && it != values.cend(); ++it)
        Q_EMIT receivedAnswerArg(it.key(), it.value());

    using Signal = void (LocalDevice::*)(int);
    const auto announce = [this, &alive, &values](int number, Signal signal) {
        const auto value = values.constFind(number);
        if (alive && value != values.cend())
            Q_EMIT(this->*signal)(*value);
    };
    announce(0, &LocalDevice::receivedAnswerArg0);
    announce(1, &LocalDevice::receivedAnswerArg1);
    announce(2, &LocalDevice::receivedAnswerArg2);
    announce(3, &LocalDevice::receivedAnswerArg3);
}

void LocalDevice::buildDebug()
{
    if (m_statusLabel)
        return;
    m_statusLabel = new QLabel;
    m_statusLabel->setAlignment(Qt::AlignLeft | Qt::AlignTop);
    m_statusLabel->setTextFormat(Qt::PlainText);

    auto *scrollArea = new StatusArea(IconSize + IconRightMargin);
    scrollArea->setWidgetResizable(true);
    scrollArea->setWidget(m_statusLabel);
    auto *layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(scrollArea);

    startTimer(StatusPeriodMs, Qt::CoarseTimer);
}

QString LocalDevice::statusText()
{
    if (m_title.isEmpty())
        return unknownDevice();
    return QStringLiteral("%1\nDevice Read: %2\nDevice Send: %3\n%4\nSended / Received: %5 / %6\n\n%7\n\n%8")
        .arg(m_title, m_deviceReadPath, m_deviceSendPath, additionalDevInfo(), QString::number(sentCount),
             QString::number(receivedCount), m_commandsText, m_answersText);
}

QString LocalDevice::additionalDevInfo()
{
    return {};
}

void LocalDevice::timerEvent(QTimerEvent *event)
{
    if (m_statusLabel) {
        m_statusLabel->setText(statusText());
        setToolTip(m_statusLabel->text());
    }
    if (event)
        QObject::timerEvent(event);
}

void LocalDevice::paintEvent(QPaintEvent *)
{
    QPainter painter(this);
    painter.drawImage(width() - IconSize - IconRightMargin, IconTop, deviceIcon());
}

void LocalDevice::showEvent(QShowEvent *event)
{
    if (m_statusLabel) {
        QWidget::showEvent(event);
        return;
    }
    event->ignore();
    hide();
}
