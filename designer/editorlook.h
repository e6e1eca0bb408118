/// \file
/// How our widgets look and behave while a form is edited.
#pragma once

#include <QObject>

class QWidget;

/// Whether \a widget stands on a form that is being edited, not on one that is tried out.
bool isOnEditedForm(const QWidget &widget);

/// Makes the running application ready for forms with our widgets: gives the editor its settings back,
/// which the library's start-up took, and opens the catalogue that the environment variable KEL_CATALOGUE
/// names. Calling it again does no harm.
void prepareEditor();

/// Puts \a widget into its editor's look: a button marks what is unseen on a panel and checks once a second
/// whether the catalogue knows its command, a timer shows its picture. Shown on anything but a form that is
/// edited, as in a preview, the widget goes back to how it runs.
void giveEditorLook(QWidget &widget);
