#include "qpiconnection.h"

#include "qpiconnectionline.h"

#include <piqt.h>

#include <algorithm>
#include <utility>

QPIConnection::QPIConnection(const QString &name, QObject *parent)
    : QObject(parent)
    , m_name(name)
    , m_inbox(std::make_shared<QPIConnectionInbox>())
{
    setObjectName(name);
}

QPIConnection::~QPIConnection()
{
    closeAll();
}

void QPIConnection::setMessageGap(int milliseconds)
{
    m_messageGapMs = milliseconds;
}

bool QPIConnection::refuse(const QString &fullPath, const QString &reason)
{
    m_errors << reason;
    Q_EMIT openFailed(fullPath, reason);
    return false;
}

std::shared_ptr<QPIConnectionLine> QPIConnection::find(const QString &fullPath) const
{
    const auto isNamed = [&](const auto &line) { return line->names().contains(fullPath); };
    const auto found = std::find_if(m_lines.begin(), m_lines.end(), isNamed);
    return found == m_lines.end() ? nullptr : *found;
}

bool QPIConnection::open(const QString &fullPath)
{
    if (const auto known = find(fullPath)) {
        known->names() << fullPath;
        return true;
    }

    const PIString path = Q2PIString(fullPath);
    const PIString error = PIIODevice::fullPathError(path);
    std::unique_ptr<PIIODevice> device(error.isEmpty() ? PIIODevice::createFromFullPath(path) : nullptr);
    if (!device)
        return refuse(fullPath, PI2QString(error));

    // Two texts may say the same, for example one with the usual speed left out.
    const PIString written = device->constructFullPath();
    for (const auto &line : m_lines) {
        if (!written.isEmpty() && line->device().constructFullPath() == written) {
            line->names() << fullPath;
            return true;
        }
    }

    const auto line = std::make_shared<QPIConnectionLine>(*this, std::move(device));
    if (!line->open())
        return refuse(fullPath, PI2QString(line->device().openError()));
    line->names() << fullPath;
    m_lines << line;
    return true;
}

void QPIConnection::close(const QString &fullPath)
{
    const auto line = find(fullPath);
    if (!line)
        return;
    line->names().removeOne(fullPath);
    if (!line->names().isEmpty())
        return;
    m_lines.removeOne(line);
    line->close();
}

void QPIConnection::closeAll()
{
    const auto lines = std::exchange(m_lines, {});
    for (const auto &line : lines) {
        line->names().clear();
        line->close();
    }
}

bool QPIConnection::isOpened(const QString &fullPath) const
{
    const auto line = find(fullPath);
    return line && line->device().isOpened();
}

QStringList QPIConnection::paths() const
{
    QStringList paths;
    for (const auto &line : m_lines)
        paths << line->names().first();
    return paths;
}

PIIODevice *QPIConnection::device(const QString &fullPath) const
{
    const auto line = find(fullPath);
    return line ? &line->device() : nullptr;
}

bool QPIConnection::write(const QString &fullPath, const PIByteArray &block)
{
    const auto line = find(fullPath);
    if (line)
        line->write(block);
    return line != nullptr;
}

/// One block for each wake-up, so that a slot which runs the events meanwhile gets them in their order too.
void QPIConnection::deliverNext()
{
    const auto block = m_inbox->take();
    const auto line = block ? block->line.lock() : nullptr;
    if (line)
        line->deliver(block->bytes, block->time);
}
