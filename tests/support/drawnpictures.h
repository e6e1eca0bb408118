/// \file
/// Which pictures a widget paints itself with.
#pragma once

#include "blankdevice.h"

#include <QImage>
#include <QPaintEngine>
#include <QPixmap>
#include <QVector>

/// Remembers the pictures that are drawn, in their order, and draws nothing.
class DrawnPictures : public BlankDevice
{
public:
    struct Drawn {
        qint64 key; ///< Two with the same key share their data.
        QSize size; ///< In its own pixels.
        bool isPixmap;
    };

    using BlankDevice::BlankDevice;

    QPaintEngine *paintEngine() const override { return &m_engine; }

    const QVector<Drawn> &all() const { return m_engine.pictures; }

    /// The keys of those that are pixmaps, or of those that are images.
    QVector<qint64> keys(bool ofPixmaps) const
    {
        QVector<qint64> keys;
        for (const Drawn &picture : all()) {
            if (picture.isPixmap == ofPixmaps)
                keys << picture.key;
        }
        return keys;
    }

private:
    struct Engine : QPaintEngine {
        Engine()
            : QPaintEngine(QPaintEngine::AllFeatures)
        {
        }

        bool begin(QPaintDevice *) override { return true; }
        bool end() override { return true; }
        void updateState(const QPaintEngineState &) override {}
        Type type() const override { return QPaintEngine::User; }
        void drawPixmap(const QRectF &, const QPixmap &pixmap, const QRectF &) override
        {
            pictures.append({pixmap.cacheKey(), pixmap.size(), true});
        }
        void drawImage(const QRectF &, const QImage &image, const QRectF &, Qt::ImageConversionFlags) override
        {
            pictures.append({image.cacheKey(), image.size(), false});
        }
        void drawLines(const QLineF *, int) override {}
        void drawPath(const QPainterPath &) override {}
        void drawPolygon(const QPointF *, int, PolygonDrawMode) override {}

        QVector<Drawn> pictures;
    };

    mutable Engine m_engine;
};
