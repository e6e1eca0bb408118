/// \file
/// A plot for panels.
#pragma once

#include <QImage>
#include <QMap>
#include <QRectF>
#include <QSet>
#include <QString>
#include <QStringList>
#include <QVector>

#include <graphic.h>
#include <graphicvariable.h>
#include <kelwidgetsexport.h>

#include <memory>

class QPainter;

/// Plot with a legend whose curves are named by a list of texts "source=title". Whoever has the data puts
/// it into the curves by the plot's own operations and calls graphicDone() when a variable's data is
/// there; until all are, an icon turns in the corner once reset() or showProgress() was called.
/// GUI thread only.
class KEL_WIDGETS_EXPORT KelGraphic : public Graphic
{
    Q_OBJECT
    Q_PROPERTY(QStringList variables READ variables WRITE setVariables DESIGNABLE false)

public:
    explicit KelGraphic(QWidget *parent = nullptr);

    /// Makes one curve of each text, in their order, with the right side as its title. A text without "="
    /// is source and title at once. What is done already stays done, and the icon goes on as it is.
    void setVariables(const QStringList &list);
    QStringList variables() const;               ///< As "left=right", also where no "=" was given.
    QStringList variableNames() const;           ///< The left sides, in the order of the curves.
    QMap<QString, QString> variablesMap() const; ///< Right side of each left side; of equal ones, the last.

    /// For hosts that ask every widget for its debug view: a plot has none.
    void buildDebug() {}

public Q_SLOTS:
    /// The data of the variable \a name is complete. All are when as many different names were given here
    /// as there are variables, whatever the names.
    void graphicDone(QString name);
    void reset();        ///< Empties the curves, forgets what is done and shows the icon.
    void showProgress(); ///< Shows the icon until all variables are done.

protected:
    void resizeEvent(QResizeEvent *event) override;
    void timerEvent(QTimerEvent *event) override;
    void changeEvent(QEvent *event) override;

private Q_SLOTS:
    void canvasPaint(QPainter *p);

private:
    void updateIconSize();

    QVector<GraphicVariable> m_variables;
    QSet<QString> m_done;
    std::shared_ptr<const QImage> m_progressImage; // shared by all plots
    QRectF m_iconRect;                             ///< About the point around which the icon turns.
    double m_iconWidth = 0.0;
    double m_iconHeight = 0.0;
    int m_timerID = 0; ///< 0 when the icon stands still.
    int m_angle = 0;   ///< Degrees clockwise.
    bool m_isShowing = false;
    bool m_isAllDone = false;
};
