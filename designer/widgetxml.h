/// \file
/// What Qt Designer puts on a form when a widget is dropped there.
#pragma once

#include <QString>

struct KelWidgetInfo;

/// The form snippet for \a info: the widget with its first size, a caption when it can show one, two pages
/// when it holds pages, and how C++ knows its class (\a header and the Qt class that it extends).
QString widgetXml(const KelWidgetInfo &info, const QString &header);
