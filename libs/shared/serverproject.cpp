#include "serverproject.h"

#include "projectfile.h"

#include <chunkstream.h>

#include <QApplication>
#include <QDebug>
#include <QFile>
#include <QFileInfo>
#include <QMessageBox>

namespace Kv_Designer
{

namespace
{

const QString CannotOpen = QStringLiteral("Can`t open \"%1\"!");
const QString NotAProjectText = QStringLiteral("This file is not Nodewright project!");
const QString WrongVersionText = QStringLiteral("File version doesn`t match!");

/// Tells the operator what went wrong; the debug stream in a program without windows.
void complain(const QString &text)
{
    if (qobject_cast<QApplication *>(QCoreApplication::instance()) == nullptr) {
        qDebug().noquote() << text;
        return;
    }
    QMessageBox box(QMessageBox::Critical, QStringLiteral("Server Project"), text, QMessageBox::Ok,
                    QApplication::activeWindow());
    box.setTextFormat(Qt::PlainText); // a path is not markup
    box.exec();
}

QByteArray writeChunks(const ServerProject &project)
{
    ChunkStream chunks;
    chunks.add(VersionChunk, project.version);
    chunks.add(ScriptFilesChunk, project.scriptFiles);
    chunks.add(UiFileChunk, project.uiFile);
    chunks.add(DataFileChunk, project.dataFile);
    chunks.add(VarFileChunk, project.varFile);
    chunks.add(CmFileChunk, project.cmFile);
    chunks.add(MainScriptChunk, project.mainScript);
    return chunks.data();
}

/// Takes the chunk at hand into its field, which stays as it is when the chunk is malformed.
void readChunk(const ChunkStream &chunks, int id, ServerProject &project)
{
    switch (id) {
    case VersionChunk:
        chunks.getData(project.version);
        break;
    case ScriptFilesChunk:
        chunks.getData(project.scriptFiles);
        break;
    case UiFileChunk:
        chunks.getData(project.uiFile);
        break;
    case DataFileChunk:
        chunks.getData(project.dataFile);
        break;
    case VarFileChunk:
        chunks.getData(project.varFile);
        break;
    case CmFileChunk:
        chunks.getData(project.cmFile);
        break;
    case MainScriptChunk:
        chunks.getData(project.mainScript);
        break;
    default:
        break;
    }
}

} // namespace

bool ServerProject::load(const QString &path, bool showMessages)
{
    if (path.isEmpty())
        return false;

    QString problem;
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly)) {
        problem = CannotOpen.arg(path);
    } else {
        const ReadResult result = read(file);
        if (result == ReadResult::Good)
            return true;
        problem = result == ReadResult::NotAProject ? NotAProjectText : WrongVersionText;
    }
    file.close();
    if (showMessages)
        complain(problem);
    return false;
}

bool ServerProject::save(const QString &path) const
{
    if (path.isEmpty())
        return false;

    QFile file(path);
    if (!file.open(QIODevice::ReadWrite)) {
        complain(CannotOpen.arg(path));
        return false;
    }
    file.resize(0);
    file.write(toByteArray());
    return true;
}

QByteArray ServerProject::toByteArray() const
{
    QByteArray bytes;
    QDataStream stream(&bytes, QIODevice::WriteOnly);
    stream.setVersion(ChunkStream::StreamVersion);
    stream.writeRawData(ProjectMagic.data(), static_cast<int>(ProjectMagic.size()));
    stream << writeChunks(*this);
    return bytes;
}

ServerProject::ReadResult ServerProject::read(QIODevice &source)
{
    QDataStream stream(&source);
    stream.setVersion(ChunkStream::StreamVersion);
    std::array<char, ProjectMagic.size()> magic = {};
    const int magicSize = static_cast<int>(magic.size());
    if (stream.readRawData(magic.data(), magicSize) != magicSize || magic != ProjectMagic)
        return ReadResult::NotAProject;

    ServerProject project;
    project.version = NoVersion;
    ChunkStream chunks;
    chunks.setSource(stream);
    for (int id = chunks.read(); id != ChunkStream::EndMark; id = chunks.read())
        readChunk(chunks, id, project);

    if (project.version <= NoVersion)
        return ReadResult::WrongVersion;
    *this = project;
    return ReadResult::Good;
}

void ServerProject::makeEmptyNames(QString base)
{
    base.chop(QFileInfo(base).completeSuffix().size());
    if (base.endsWith(QLatin1Char('.')))
        base.chop(1);

    const auto fill = [&base](QString &name, const char *suffix) {
        if (name.isEmpty())
            name = base + QLatin1String(suffix);
    };
    fill(uiFile, ".ui");
    fill(dataFile, ".dat");
    fill(varFile, ".var");
    fill(cmFile, ".cm");
}

bool ServerProject::addScriptFile(const QString &file)
{
    if (file.isEmpty() || scriptFiles.contains(file))
        return false;
    scriptFiles.append(file);
    if (mainScript.isEmpty())
        mainScript = scriptFiles.constFirst();
    return true;
}

void ServerProject::removeScriptFile(const QString &file)
{
    if (file.isEmpty() || !scriptFiles.contains(file))
        return;
    const bool wasMain = mainScript == file; // the name itself may go with the list
    scriptFiles.removeAll(file);
    if (wasMain)
        mainScript = scriptFiles.isEmpty() ? QString() : scriptFiles.constFirst();
}

QStringList ServerProject::getAssFiles() const
{
    return scriptFiles + QStringList{dataFile, varFile, cmFile};
}

QString ServerProject::mainScriptText(QDir dir) const
{
    if (mainScript.isEmpty())
        return {};
    dir.makeAbsolute();
    QFile file(dir.filePath(mainScript));
    if (!file.open(QIODevice::ReadOnly))
        return {};
    return QString::fromUtf8(file.readAll().constData());
}

} // namespace Kv_Designer
