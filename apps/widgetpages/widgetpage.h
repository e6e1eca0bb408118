/// \file
/// Pages about widgets, made of what the widgets say about themselves.
#pragma once

#include "memberprose.h"

#include <widgetlist.h>

/// The page of the widget \a info in Markdown: what it is for, its properties with their types and first
/// values, its numbers, signals and slots. Values that animations drive ("h__...") and what the Qt classes
/// behind the widget have are left out. Throws a ProseError when \a prose lacks a text.
QString widgetPage(const KelWidgetInfo &info, MemberProse &prose);

/// The page that leads to the pages of \a list.
QString widgetIndex(const QVector<KelWidgetInfo> &list);
