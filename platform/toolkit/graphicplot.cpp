#include "graphicplot.h"

#include <graphiccanvas.h>
#include <graphiccurve.h>

#include <algorithm>
#include <cmath>

#include <dlfcn.h>

namespace
{

using NewPlot = GraphicPlot *(*)(QWidget *);

/// The folder of the library that this code is in, with a slash at its end.
QByteArray ownFolder()
{
    Dl_info library;
    if (::dladdr(reinterpret_cast<const void *>(&newGraphicPlot), &library) == 0)
        return QByteArray();
    const QByteArray path(library.dli_fname);
    return path.left(path.lastIndexOf('/') + 1);
}

/// The module stands where this library is and stays loaded once it is. It is named with its folder: the search path
/// of this library does not count for a program whose dlopen() comes from elsewhere, as under a sanitizer. What it
/// brings along is bound as it is used, and most of that never is.
NewPlot loadPlot()
{
    const QByteArray path = ownFolder() + KEL_PLOT_MODULE;
    void *module = ::dlopen(path.constData(), RTLD_LAZY | RTLD_LOCAL);
    const auto function = module ? reinterpret_cast<NewPlot>(::dlsym(module, "kelNewPlot")) : nullptr;
    if (!function)
        qFatal("A part of the library is missing: %s", ::dlerror());
    return function;
}

} // namespace

GraphicPlot *newGraphicPlot(QWidget *parent)
{
    static const NewPlot newPlot = loadPlot();
    GraphicPlot *plot = newPlot(parent);
    plot->setArea(new GraphicCanvas(*plot));
    return plot;
}

void GraphicPlot::settle()
{
    layOut();
    m_canvas->invalidate();
}

void GraphicPlot::looksDifferent()
{
    if (m_canvas)
        m_canvas->invalidate();
}

void GraphicPlot::showNew(double from, double to)
{
    double margin = 0.0;
    for (const GraphicCurveLook &curve : curves)
        margin = std::max(margin, curveMargin(curve.pen));
    const GraphicScale pixels = scale(Graphic::XAxis);
    const double left = std::max(pixels.pixel(from) - margin, 0.0);
    const double right = std::min(pixels.pixel(to) + margin, static_cast<double>(m_canvas->width()));
    if (from <= to && left < right)
        m_canvas->invalidate(static_cast<int>(left), static_cast<int>(std::ceil(right)));
}
