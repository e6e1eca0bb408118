#include "connectionedit.h"

#include "chunkstream.h"

namespace
{

enum ModelChunk { NameChunk = 1, LabelsChunk = 2, DevicesChunk = 3 };

} // namespace

ConnectionEdit::ConnectionEdit(QObject *parent)
    : QObject(parent)
{
}

void ConnectionEdit::setName(const QString &name)
{
    if (name == m_name)
        return;
    m_name = name;
    Q_EMIT changed();
}

void ConnectionEdit::addDevice(const QString &name, const QString &device)
{
    m_devices.append({name, device});
    Q_EMIT changed();
}

bool ConnectionEdit::removeDevice(int index)
{
    if (index < 0 || index >= m_devices.size())
        return false;
    m_devices.remove(index);
    Q_EMIT changed();
    return true;
}

void ConnectionEdit::clear()
{
    if (m_name.isEmpty() && m_devices.isEmpty())
        return;
    m_name.clear();
    m_devices.clear();
    Q_EMIT changed();
}

QByteArray ConnectionEdit::model() const
{
    QStringList labels;
    QStringList devices;
    for (const Device &device : m_devices) {
        labels.append(device.name);
        devices.append(device.device);
    }

    ChunkStream chunks;
    chunks.add(NameChunk, m_name);
    chunks.add(LabelsChunk, labels);
    chunks.add(DevicesChunk, devices);
    return chunks.data();
}

bool ConnectionEdit::setModel(const QByteArray &model)
{
    QString name;
    QStringList labels;
    QStringList devices;
    bool hasName = false;
    bool hasLabels = false;
    bool hasDevices = false;

    ChunkStream chunks(model);
    for (int id = chunks.read(); id != ChunkStream::EndMark; id = chunks.read()) {
        if (id == NameChunk)
            hasName = chunks.getData(name);
        else if (id == LabelsChunk)
            hasLabels = chunks.getData(labels);
        else if (id == DevicesChunk)
            hasDevices = chunks.getData(devices);
    }
    if (!hasName || !hasLabels || !hasDevices || labels.size() != devices.size())
        return false;

    m_name = name;
    m_devices.clear();
    for (int i = 0; i < labels.size(); ++i)
        m_devices.append({labels.at(i), devices.at(i)});
    Q_EMIT changed();
    return true;
}
