/// \file
/// The two worlds that a panel is looked at in.
#pragma once

#include <QPalette>
#include <QString>
#include <QVector>

/// A palette by the name that stands above its pictures.
struct GalleryPalette {
    QString name;
    QPalette palette;
};

/// A light and a dark palette. Both are fixed colours, so that no desktop's settings reach the pictures.
const QVector<GalleryPalette> &galleryPalettes();
