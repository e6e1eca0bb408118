/// \file
/// A form as it stands in its file: objects, properties, pictures.
#pragma once

#include <QByteArray>
#include <QHash>
#include <QString>
#include <QStringList>
#include <QVector>

/// A value that the form sets.
struct FormProperty {
    QString text;     ///< Of a number, a text, an enumeration; as it stands there.
    QStringList list; ///< Of a list of texts.
    int line = 0;
};

/// Anything that a connection can end at.
struct FormObject {
    QString element;   ///< "widget", "layout", "action", "actiongroup" or "buttongroup".
    QString className; ///< Of a widget.
    QString name;
    int line = 0;
    QHash<QString, FormProperty> properties;
};

/// A picture file that the form names.
struct FormPicture {
    QString path; ///< As it stands there: relative to the form, or ":/…" for a resource.
    int line = 0;
};

/// What stands in a form, line by line, but for its connections.
struct FormModel {
    QVector<FormObject> objects; ///< In the order of the file, the window first.
    QVector<FormPicture> pictures;

    /// Reads \a text, which PanelForm has found good.
    static FormModel fromText(const QByteArray &text);
};
