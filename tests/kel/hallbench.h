/// \file
/// The hall's panel, as `kel demo` runs it, against its simulated devices.
#pragma once

#include <catalogue/catalogue.h>
#include <examples.h>
#include <kelglobals.h>
#include <localdevice.h>
#include <panel/deviceroutes.h>
#include <panel/formloader.h>
#include <simulator/ptyline.h>
#include <simulator/simulator.h>

#include <QHash>
#include <QTemporaryDir>

#include <memory>

/// Longer than any rest of the hall's timers, a write and an answer together; what was not sent by then
/// never is.
inline constexpr int QuietMs = 700;
/// For what takes a few seconds on a machine that has time.
inline constexpr int PatienceMs = 20000;

/// The hall's catalogue, open as long as this lives.
class HallCatalogue
{
public:
    HallCatalogue()
    {
        const QString catalogue = m_folder.filePath(QStringLiteral("hall.sqlite"));
        makeCatalogue(examplePath(QStringLiteral("hall/hall.toml")), catalogue);
        openCatalogue(catalogue);
    }

private:
    QTemporaryDir m_folder;
};

/// The panel on the screen with its devices connected.
class HallBench
{
public:
    HallBench()
        : m_simulator(Simulator::readRules(examplePath(QStringLiteral("hall/hall.rules"))), std::make_unique<PtyLine>(),
                      GapMs, TrafficLog(QStringLiteral("device")))
        , m_form(loadForm(formPath()))
        , m_routes(Kel::connection, formPath())
    {
        m_routes.setPortName(QStringLiteral("/tmp/kel-hall"), m_simulator.lineName());
        QObject::connect(&m_routes, &DeviceRoutes::sent, &m_routes,
                         [this](const QString &device, const QByteArray &bytes) {
                             m_sent[device] << QString::fromLatin1(bytes.toHex(' ').toUpper());
                         });
        m_routes.open(*m_form.window);
        m_form.window->show();
    }

    QWidget &window() const { return *m_form.window; }
    QStringList complaints() const { return m_form.complaints; }

    /// The widget \a name of the form.
    template <typename Widget>
    Widget &part(const char *name) const
    {
        auto *found = m_form.window->findChild<Widget *>(QLatin1String(name));
        if (!found)
            qFatal("the hall has no %s", name);
        return *found;
    }

    /// The blocks that \a device sent so far.
    QStringList sentBy(const char *device) const { return m_sent.value(QLatin1String(device)); }

    /// Lets \a device hear \a message, as if it came from the line.
    void hear(const char *device, const char *message) const
    {
        part<LocalDevice>(device).dataReceived(QByteArray::fromHex(message), QString());
    }

private:
    static constexpr int GapMs = 20;

    static QString formPath() { return examplePath(QStringLiteral("hall/hall.ui")); }

    Simulator m_simulator;
    LoadedForm m_form;
    QHash<QString, QStringList> m_sent;
    DeviceRoutes m_routes;
};
