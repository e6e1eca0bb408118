/// \file
/// What the catalogue says about the devices of a panel.
#pragma once

#include <QHash>
#include <QMap>
#include <QString>

#include <map>

/// A make of device: what it is told, and what it answers.
struct CatalogueMake {
    int number = 0; ///< Its row in `devices`.
    QString name;
    QMap<int, QString> commands; ///< Texts by number.
    QMap<int, QString> answers;
};

/// One device that `currentID` names, as far as the catalogue has it.
struct CatalogueDevice {
    QString problem; ///< What is missing, half a sentence; empty when the device is complete.
    int row = -1;    ///< In `current`.
    QString name;
    int deviceID = -1;                   ///< Its own id on the bus.
    const CatalogueMake *make = nullptr; ///< Null when there is a problem.
};

/// Reads devices out of the open catalogue (Kel::commandsDB) as they are asked for, once each. What a
/// query cannot read counts as missing. GUI thread only.
class CatalogueModel
{
public:
    /// A make with more commands or answers than this is none that people have written.
    static constexpr int MaxRows = 10000;
    /// Commands and answers of all devices that are asked for together.
    static constexpr int MaxTexts = 200000;

    /// The device in the row \a currentID. Throws a CommandError when there is too much about it.
    const CatalogueDevice &device(int currentID);

private:
    CatalogueDevice readDevice(int currentID);
    void countTexts(const CatalogueDevice &device);
    const CatalogueMake *readMake(int number);

    std::map<int, CatalogueDevice> m_devices;
    std::map<int, CatalogueMake> m_makes;
    int m_texts = 0; ///< Of the devices so far.
};
