/// \file
/// A device of the command catalogue, as panels see it.
#pragma once

#include <QCache>
#include <QMap>
#include <QVector>
#include <QWidget>

#include <answertable.h>
#include <commandtext.h>
#include <kelwidgetsexport.h>
#include <pibytearray.h>
#include <pievaluator.h>
#include <pistring.h>

class QLabel;

/// Stands for one device of the command catalogue. Other widgets set its arguments and ask it to send a
/// command by number; it hands the command's bytes to whoever listens on sending(), compares the bytes
/// that come back through dataReceived() with the device's answers and announces the one that matched,
/// with the values read out of it. It does no input or output itself. While it is disabled it neither
/// sends nor answers. It hides itself when it is shown, unless buildDebug() gave it a status view.
/// GUI thread only; a transport of another thread reaches it through queued connections.
class KEL_WIDGETS_EXPORT LocalDevice : public QWidget
{
    Q_OBJECT
    Q_PROPERTY(int currentID READ currentID WRITE setCurrentID)
    Q_PROPERTY(QString deviceReadPath READ deviceReadPath WRITE setDeviceReadPath)
    Q_PROPERTY(QString deviceSendPath READ deviceSendPath WRITE setDeviceSendPath)
    Q_PROPERTY(bool twitchGPIO READ twitchGPIO WRITE setTwitchGPIO)
    Q_PROPERTY(int twitchPinNumber READ twitchPinNumber WRITE setTwitchPinNumber)
    Q_PROPERTY(bool twitchPinReadState READ twitchPinReadState WRITE setTwitchPinReadState)
    Q_PROPERTY(bool twitchPinSendState READ twitchPinSendState WRITE setTwitchPinSendState)

public:
    explicit LocalDevice(QWidget *parent = nullptr);
    ~LocalDevice() override;

    int currentID() const { return m_currentID; } ///< Catalogue row of the selected device; -1 for none.
    QString deviceReadPath() const { return m_deviceReadPath; }
    QString deviceSendPath() const { return m_deviceSendPath; }

    // The direction pin that a serial transport toggles around each write; only kept here for it.
    bool twitchGPIO() const { return m_twitchGPIO; } ///< Whether there is a pin to toggle.
    int twitchPinNumber() const { return m_twitchPinNumber; }
    bool twitchPinReadState() const { return m_twitchPinReadState; } ///< Its level while reading.
    bool twitchPinSendState() const { return m_twitchPinSendState; } ///< Its level while sending.

    // What a subclass with a transport of its own replaces. They are the first virtual functions after
    // QWidget's, in this order, so that subclasses that were compiled separately keep working.

    /// Sends the bytes of the command \a text, unless disabled.
    virtual void send(QString text);
    /// Takes \a data that came in \a from somewhere; here the same as receivedLocal(\a data).
    virtual void received(QByteArray data, QString from);
    /// The name to show for the device \a name; here with " [local]" behind it.
    virtual QString prepareDevName(const QString &name);
    /// Line about the transport for the status view; here empty.
    virtual QString additionalDevInfo();

    /// The bytes of the command \a text with the present arguments, also while disabled. An argument
    /// that the text names and that was never set becomes 0. An expression's error goes to the debug
    /// output and the expression adds no byte.
    PIByteArray parseSendData(const QString &text);
    /// Logs \a data as sent, unless disabled.
    void sendLocal(const PIByteArray &data);
    /// Logs \a data and announces the first answer, by ascending number, that it matches, unless disabled.
    void receivedLocal(const QByteArray &data);

    /// Gives the widget its status view, once: text about the device that follows it ten times a second.
    void buildDebug();

    QSize sizeHint() const override;

Q_SIGNALS:
    // The order of the signals and slots is what queued connections count by; it stays.
    void receivedAnswerID(int answer_ID);
    void receivedAnswerArg(int arg_num, int arg_value); ///< For each value read, by ascending number.
    void receivedAnswerArg0(int arg0);
    void receivedAnswerArg1(int arg1);
    void receivedAnswerArg2(int arg2);
    void receivedAnswerArg3(int arg3);
    void sending(PIByteArray data); ///< The bytes of a command, for the transport.

public Q_SLOTS:
    void dataReceived(QByteArray data, QString from); ///< Passes both to received().
    void enable();
    void disable();
    /// Selects the catalogue row \a id and loads its names, commands and answers through the
    /// application's default database. The present row again does nothing. Without a usable catalogue
    /// the device stays without what could not be read, and nothing is reported.
    void setCurrentID(int id);
    void setDeviceReadPath(QString path);
    void setDeviceSendPath(QString path);
    void setTwitchGPIO(bool yes);
    void setTwitchPinNumber(int pin);
    void setTwitchPinReadState(bool level);
    void setTwitchPinSendState(bool level);
    /// Sets argument \a arg_num, any number, and the variable "a<number>" of expressions to \a value.
    void setArgument(int arg_num, int value);
    void setArgument0(int value);
    void setArgument1(int value);
    void setArgument2(int value);
    void setArgument3(int value);
    void sendCommand(int cmd_ID);        ///< Sends the catalogue's command; an unknown one has no bytes.
    void sendCommand(QString cmd);       ///< Sends the command text \a cmd.
    void sendPrepared(PIByteArray data); ///< Announces and logs bytes that are ready, unless disabled.

protected:
    void timerEvent(QTimerEvent *event) override; ///< Refreshes the status view; null is no real event.
    void paintEvent(QPaintEvent *event) override;
    void showEvent(QShowEvent *event) override;

    /// Looks for the first answer that \a message is, and leaves what it captured in answerArguments.
    bool findAnswer(const QByteArray &message, int &answerID);

    PIString readPath; ///< The device paths as log lines and transports of the primitives take them.
    PIString sendPath;
    int deviceID = -1;           ///< The device's own id on its bus.
    QMap<int, QString> commands; ///< Command texts by command number.
    QMap<int, QString> commandDescriptions;
    QMap<int, QVector<int>> answers; ///< Elements of an AnswerPattern by answer number.
    QMap<int, int> arguments;
    QMap<int, int> answerArguments; ///< Values read out of the last message.
    PIEvaluator evaluator;          ///< Knows each argument that was set as the variable "a<number>".
    int sentCount = 0;              ///< Shown in the status view; sending does not move it.
    int receivedCount = 0;          ///< Messages that matched an answer.

private:
    CommandText commandText(const QString &text);
    void announceAnswer(int answerID);
    bool loadSelection();
    bool loadNames(int device, const QString &instanceName, bool &known);
    bool loadCommands(int device);
    bool loadAnswers(int device);
    QString statusText();

    int m_currentID = -1;
    QString m_deviceReadPath;
    QString m_deviceSendPath;
    bool m_twitchGPIO = true;
    int m_twitchPinNumber = 18;
    bool m_twitchPinReadState = false;
    bool m_twitchPinSendState = true;
    AnswerTable m_answerTable;                   ///< Of the answers when a message last came.
    QCache<QString, CommandText> m_commandTexts; ///< What was sent lately, already read.

    QString m_title;
    QString m_commandsText;
    QString m_answersText;
    QLabel *m_statusLabel = nullptr; ///< Null until the status view is built.
};
