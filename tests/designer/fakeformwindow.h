/// \file
/// Stands in for the window in which an editor shows a form.
#pragma once

#include <QWidget>

/// Bears the name by which our widgets know that they are being edited.
class QDesignerFormWindowInterface : public QWidget
{
    Q_OBJECT
};
