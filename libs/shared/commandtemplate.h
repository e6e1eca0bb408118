/// \file
/// A command template compiled once, for hosts that encode and match thousands of messages.
#pragma once

#include <QByteArray>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <QVector>
#include <commandargument.h>
#include <kelwidgetsexport.h>

namespace Kv_Designer
{

struct ValueCoder;

/// A command template as an image of its fixed bytes and a list of its fields. Encodes and matches
/// exactly as prepareCommand() and parseCommand() do with the entries of the same text, only faster.
/// A value class; const calls may come from several threads at once.
class KEL_WIDGETS_EXPORT CommandTemplate
{
public:
    /// Compiles \a text; see packetArgumentsFromText() for how it is read.
    static CommandTemplate fromText(const QString &text);

    /// Whether every token of the text is well formed (see findTemplateFault()). A template that is
    /// not still works as the free functions read it.
    bool isValid() const { return m_valid; }

    int byteCount() const { return m_image.size(); }      ///< Length of every encoded message.
    int argumentCount() const { return m_argumentCount; } ///< How many values encode() needs.

    /// The name of each value in order, empty where it has none. Of several names for one value the
    /// first counts. At most 65,536 names.
    QStringList argumentNames() const;

    /// Encodes \a values into \a out, whose memory is used again when it has the right size already.
    /// False with an empty \a out and a line on the debug stream when values are missing.
    bool encode(const QVector<QVariant> &values, QByteArray &out) const;

    /// Compares \a data with the template and captures into \a values, as parseCommand() does.
    bool match(const QByteArray &data, QVector<QVariant> &values) const;

private:
    /// A value that the template refers to.
    struct Field {
        const ValueCoder *coder;
        int offset;
        int slot;
    };

    /// What matching does next, from the front of the template to its back.
    struct Step {
        enum class Kind { Compare, Capture, Refuse };
        Kind kind;
        int at;     ///< Compare: offset of the first byte. Capture: index of the field.
        int length; ///< Compare: how many bytes.
    };

    void append(const CommandArgument &argument, int offset);
    void appendConstant(const CommandArgument &argument, int offset);
    void appendReference(const CommandArgument &argument, int offset);

    QByteArray m_image;    ///< What is sent; zeros where a field or a wildcard stands.
    QByteArray m_expected; ///< What is compared; differs from the image in constants of several bytes.
    QVector<Field> m_fields;
    QVector<Step> m_steps;
    QMap<int, QString> m_names;
    int m_argumentCount = 0;
    bool m_valid = false;
};

} // namespace Kv_Designer
