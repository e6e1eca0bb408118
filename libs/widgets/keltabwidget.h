/// \file
/// Pages behind tabs that a finger can drag.
#pragma once

#include <QPoint>
#include <QTabBar>
#include <QTabWidget>
#include <kelwidgetsexport.h>

#include <memory>

class KelTabPicture;

/// Row of tabs without scroll buttons. When it is wider than its KelTabWidget it is dragged sideways; a
/// short tap selects a tab, and faded arrows at the visible ends tell that more tabs lie beyond.
/// GUI thread only.
class KEL_WIDGETS_EXPORT KelTabBar : public QTabBar
{
    Q_OBJECT

public:
    explicit KelTabBar(QWidget *parent = nullptr);
    ~KelTabBar() override;

Q_SIGNALS:
    void needMoveBar(); ///< The bar has another size or was dragged: its widget has to place it.

protected:
    bool event(QEvent *event) override;
    void mousePressEvent(QMouseEvent *event) override;
    void mouseMoveEvent(QMouseEvent *event) override;
    void mouseReleaseEvent(QMouseEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    QPaintDevice *redirected(QPoint *offset) const override;
    QPainter *sharedPainter() const override;

private:
    friend class KelTabWidget;

    void place(int widgetWidth);
    bool canBeDragged() const;
    bool keepsPicture() const;
    void refreshPicture(QPaintEvent *event);
    void drawArrows(QPainter &painter) const;

    QPoint m_last;      // Pointer at the last move, in the widget behind the bar.
    QPoint m_press;     // Pointer at the press, in the bar.
    QPoint m_travelled; // Way of the pointer since the press, per axis.
    int m_offset = 0;   // The bar's x; 0 or negative.
    bool m_draggable = false;
    bool m_grabbed = false; // The press was the bar's own, not the base class's.

    std::unique_ptr<KelTabPicture> m_picture; // The tabs without arrows, so that a drag only moves them.
    bool m_isPictured = false;                // The base class paints into the picture just now.
};

/// Pages behind tabs for touch panels: the tabs are dragged when they need more room than there is, and
/// with \ref autoSide they go to the long side of the widget. GUI thread only.
class KEL_WIDGETS_EXPORT KelTabWidget : public QTabWidget
{
    Q_OBJECT
    Q_PROPERTY(int emitID READ emitID WRITE setEmitID)
    Q_PROPERTY(int setID READ setID WRITE setSetID)
    Q_PROPERTY(bool autoSide READ autoSide WRITE setAutoSide)
    Q_PROPERTY(VerticalSide preferredVerticalSide READ preferredVerticalSide WRITE setPreferredVerticalSide)
    Q_PROPERTY(HorizontalSide preferredHorizontalSide READ preferredHorizontalSide WRITE setPreferredHorizontalSide)

public:
    enum VerticalSide : int { Top = 0, Bottom = 1 };
    Q_ENUM(VerticalSide)
    enum HorizontalSide : int { Left = 0, Right = 1 };
    Q_ENUM(HorizontalSide)

    explicit KelTabWidget(QWidget *parent = nullptr);

    int emitID() const { return m_emitID; }      ///< Number that currentChangedID() carries.
    int setID() const { return m_setID; }        ///< Number that the numbered slots must match.
    bool autoSide() const { return m_autoSide; } ///< At a resize the tabs go to the long side by themselves.
    VerticalSide preferredVerticalSide() const { return m_verticalSide; }       ///< Where they go in a high widget.
    HorizontalSide preferredHorizontalSide() const { return m_horizontalSide; } ///< Where they go in a wide widget.

    QSize sizeHint() const override;
    QSize minimumSizeHint() const override; ///< Any width will do, since the tabs can be dragged.

Q_SIGNALS:
    /// Code has chosen page \a index by setCurrentIndex(), maybe the one that was shown before. A tab that
    /// the operator chooses is told by currentChanged() alone.
    void currentChangedID(int id, int index);

private Q_SLOTS:
    void moveBar();

public Q_SLOTS:
    void enable();
    void disable();
    void setCurrentIndex(int index); ///< Always followed by currentChangedID().
    void setEmitID(int id);
    void setSetID(int id);
    void enableID(int set_id);
    void disableID(int set_id);
    void setEnabledID(int set_id, bool on);
    void setDisabledID(int set_id, bool off);
    void setAutoSide(bool autoSide);                                         ///< Takes effect at the next resize.
    void setPreferredVerticalSide(VerticalSide preferredVerticalSide);       ///< Takes effect at the next resize.
    void setPreferredHorizontalSide(HorizontalSide preferredHorizontalSide); ///< Takes effect at the next resize.

protected:
    bool event(QEvent *event) override;
    void resizeEvent(QResizeEvent *event) override;
    void paintEvent(QPaintEvent *event) override;
    void tabInserted(int index) override;
    void tabRemoved(int index) override;

private:
    bool hasTabsAbove() const;
    void chooseSide();

    KelTabBar *m_bar; // Owned as the base class's tab bar.
    int m_emitID = -1;
    int m_setID = -1;
    VerticalSide m_verticalSide = Top;
    HorizontalSide m_horizontalSide = Left;
    bool m_autoSide = false;
};
