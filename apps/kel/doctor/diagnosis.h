/// \file
/// What `kel doctor` knows of a machine, and what it makes of that.
#pragma once

#include <QString>
#include <QStringList>
#include <QVector>

/// A device file that somebody has to be allowed to use.
struct DeviceFile {
    QString path;
    QString group;                ///< Group that may use it.
    bool isUsable = false;        ///< This process may read and write it.
    bool isMemberOnPaper = false; ///< The user is in the group, perhaps since a moment after the log-in.
};

/// The facts, gathered without a judgement.
struct MachineFacts {
    QString builtQt;   ///< Version of the headers that we were built with.
    QString runningQt; ///< Version of the library that runs.

    bool isForDesigner = true; ///< False on a machine that only runs panels; then the next ones are not used.
    QString designerProgram;   ///< Empty when Qt Designer was not found.
    QStringList pluginFolders; ///< Where Qt Designer looks, in its order.
    QString pluginPath;        ///< The plugin that it finds; empty for none.
    QString pluginElsewhere;   ///< One that stands where Qt Designer does not look.
    QString pluginError;       ///< The loader's own words; empty when it loads.
    QStringList pluginMissing; ///< Listed widgets that the plugin does not offer.

    bool hasSqlDriver = false;
    QString sqlError; ///< Why no database opens; empty when one does.

    bool isDisplayNamed = false; ///< The environment names a display or a platform.
    QString platform;            ///< The platform that started; empty when none did.
    QString displayError;        ///< The platform's own words when it did not start.
    int fontFamilies = 0;        ///< -1 when they could not be counted.

    QVector<DeviceFile> ports;
    QString gpioChip;
    bool isGpioConfigured = false; ///< The environment names the chip.
    QVector<DeviceFile> gpio;      ///< The chip's file, when it is there.

    QString cataloguePath; ///< Empty when nobody asked for one.
    QString catalogueError;
    int catalogueDevices = 0;
};

/// One line of the report.
struct Diagnosis {
    enum class State { Good, Note, Broken };
    State state = State::Good;
    QString text;
    QString mend; ///< What helps; empty when nothing has to.
};

/// Judges \a facts: first what concerns the library, then what surrounds it. Everything broken has a mend;
/// what is not there and may not be needed is a note.
QVector<Diagnosis> diagnose(const MachineFacts &facts);
