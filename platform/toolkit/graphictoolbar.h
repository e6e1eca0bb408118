/// \file
/// The buttons of a plot. Not installed.
#pragma once

#include <QMap>
#include <QWidget>
#include <graphic.h>

class QToolButton;

/// A row with a button for each flag of Graphic::Button, the wanted ones shown. Their pictures take the
/// colour of the palette's text.
class GraphicToolBar : public QWidget
{
    Q_OBJECT

public:
    explicit GraphicToolBar(QWidget *parent);

    void setButtons(Graphic::Buttons buttons);
    void setChecked(Graphic::Button button, bool isChecked);

Q_SIGNALS:
    void clicked(Graphic::Button button, bool isChecked); ///< By the user.

protected:
    void changeEvent(QEvent *event) override;

private:
    void addButton(Graphic::Button button, const char *name, const QString &text, bool isCheckable);
    void renewIcons();

    QMap<Graphic::Button, QToolButton *> m_buttons;
    Graphic::Buttons m_shown;
};
