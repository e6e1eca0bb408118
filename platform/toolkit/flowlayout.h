/// \file
/// Widgets in rows, as words in a text. Not installed.
#pragma once

#include <QLayout>
#include <QVector>
#include <keltoolkitexport.h>

/// Where things of the sizes \a sizes stand in rows of at most \a width, \a spacing apart; one that is wider
/// gets a row of its own and is made as narrow as that.
KEL_TOOLKIT_EXPORT QVector<QRect> flow(const QVector<QSize> &sizes, int width, int spacing);

/// Lays its widgets out as flow() says; the height that it needs depends on its width.
class FlowLayout : public QLayout
{
public:
    explicit FlowLayout(QWidget *parent);
    ~FlowLayout() override;

    void addItem(QLayoutItem *item) override;
    QLayoutItem *itemAt(int index) const override;
    QLayoutItem *takeAt(int index) override;
    int count() const override;
    Qt::Orientations expandingDirections() const override;
    bool hasHeightForWidth() const override;
    int heightForWidth(int width) const override;
    QSize sizeHint() const override;
    QSize minimumSize() const override;
    void setGeometry(const QRect &rect) override;

private:
    QVector<QRect> places(int width) const;

    QVector<QLayoutItem *> m_items;
};
