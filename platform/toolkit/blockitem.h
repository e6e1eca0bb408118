/// \file
/// A block of a diagram and its pins.
#pragma once

#include <QFont>
#include <QGraphicsObject>
#include <QList>
#include <keltoolkitexport.h>
#include <propertystorage.h>

class BlockItem;

/// A pin of a block: a socket on the block's left edge with a label beside it. Made by
/// BlockItem::addPin(), owned by its block.
class KEL_TOOLKIT_EXPORT BlockItemPin : public QGraphicsObject, public PropertyStorage
{
    Q_OBJECT
    Q_PROPERTY(QString text READ text WRITE setText)

public:
    enum { Type = UserType + 0x4B02 };

    QString text() const { return m_text; } ///< The label that is shown.
    void setText(const QString &text);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    int type() const override { return Type; }

private:
    friend class BlockItem;
    BlockItemPin(const QString &text, BlockItem *block);

    QRectF labelRect() const;

    QString m_text;
    QFont m_font;
};

/// A block of a diagram: a titled box with pins that its user can move and select. It carries named
/// properties, and so does each pin. Lives on the GUI thread, as its scene does.
class KEL_TOOLKIT_EXPORT BlockItem : public QGraphicsObject, public PropertyStorage
{
    Q_OBJECT
    Q_PROPERTY(QString title READ title WRITE setTitle)

public:
    enum { Type = UserType + 0x4B01 };

    explicit BlockItem(QGraphicsItem *parent = nullptr);
    explicit BlockItem(const QString &title, QGraphicsItem *parent = nullptr);

    QString title() const { return m_title; }
    void setTitle(const QString &title);

    /// Adds a pin labelled \a title below the others. The block owns it.
    BlockItemPin *addPin(const QString &title);
    /// Pins from top to bottom.
    QList<BlockItemPin *> pins() const { return m_pins; }
    /// Removes and deletes \a pin; false when it is none of this block's.
    bool removePin(BlockItemPin *pin);

    QRectF boundingRect() const override;
    void paint(QPainter *painter, const QStyleOptionGraphicsItem *option, QWidget *widget) override;
    int type() const override { return Type; }

private:
    friend class BlockItemPin;
    void arrange();

    QString m_title;
    QFont m_font;
    QList<BlockItemPin *> m_pins;
    QSizeF m_size; ///< Of the box, without its outline.
};
