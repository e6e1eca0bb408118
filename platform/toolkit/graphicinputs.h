/// \file
/// The bounds of a plot's axes to be typed, and the line that says what is at the pointer. Not installed.
#pragma once

#include <QFrame>
#include <QLineEdit>
#include <graphic.h>
#include <graphicrange.h>

#include <array>

/// Four edits. A text that is no bound goes back to what it was.
class GraphicInputs : public QWidget
{
    Q_OBJECT

public:
    explicit GraphicInputs(QWidget *parent);

    void setTime(bool isTime); ///< Whether x is a time.
    void setRange(Graphic::Axis axis, const GraphicRange &range);

Q_SIGNALS:
    void edited(Graphic::Axis axis, double from, double to); ///< By the user.

private:
    struct Bounds {
        QLineEdit *from = nullptr;
        QLineEdit *to = nullptr;
        GraphicRange range;
        bool isTime = false;
    };

    QLineEdit *newEdit(Graphic::Axis axis, const QString &name);
    void apply(Graphic::Axis axis);
    static void show(const Bounds &bounds);

    std::array<Bounds, 2> m_bounds;
};

/// A line of text that never asks for more width than there is.
class GraphicStatus : public QWidget
{
    Q_OBJECT

public:
    explicit GraphicStatus(QWidget *parent);

    void setText(const QString &text);
    QString text() const { return m_text; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent *event) override;

private:
    QString m_text;
};
