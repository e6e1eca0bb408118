/// \file
/// Writes down what a KelButton shows and says, in order.
#pragma once

#include <QEvent>
#include <QStringList>
#include <kelbutton.h>

/// One line per signal ("stateChanged 1 0"), and one per colour that the face takes ("face #00ff00").
class ButtonLog : public QObject
{
public:
    explicit ButtonLog(KelButton *button)
        : m_button(button)
        , m_face(button->h__currentColor())
    {
        const auto note = [this](const char *name, const QVariantList &values) { write(name, values); };
        connect(button, &KelButton::pressed, this, [note] { note("pressed", {}); });
        connect(button, &KelButton::released, this, [note] { note("released", {}); });
        connect(button, &KelButton::clicked, this, [note](bool on) { note("clicked", {on}); });
        connect(button, &KelButton::toggled, this, [note](bool on) { note("toggled", {on}); });
        connect(button, &KelButton::clickedID, this, [note](int id) { note("clickedID", {id}); });
        connect(button, &KelButton::pressedID, this, [note](int id) { note("pressedID", {id}); });
        connect(button, &KelButton::releasedID, this, [note](int id) { note("releasedID", {id}); });
        connect(button, &KelButton::toggledID, this, [note](int id, bool on) { note("toggledID", {id, on}); });
        connect(button, &KelButton::stateChanged, this, [note](int state, int previous) {
            note("stateChanged", {state, previous});
        });
        connect(button, &KelButton::stateChangedID, this, [note](int id, int state, int previous) {
            note("stateChangedID", {id, state, previous});
        });
        button->installEventFilter(this);
    }

    /// Lines since the last call.
    QStringList take()
    {
        QStringList lines;
        lines.swap(m_lines);
        return lines;
    }

    void write(const QString &name, const QVariantList &values)
    {
        QStringList line(name);
        for (const QVariant &value : values)
            line << value.toString();
        m_lines << line.join(QLatin1Char(' '));
    }

protected:
    bool eventFilter(QObject *, QEvent *event) override
    {
        if (event->type() == QEvent::PaletteChange && m_button->h__currentColor() != m_face) {
            m_face = m_button->h__currentColor();
            m_lines << QStringLiteral("face ") + m_face.name();
        } else if (event->type() == QEvent::EnabledChange) {
            m_lines << (m_button->isEnabled() ? QStringLiteral("enabled") : QStringLiteral("disabled"));
        }
        return false;
    }

private:
    KelButton *m_button;
    QColor m_face;
    QStringList m_lines;
};
