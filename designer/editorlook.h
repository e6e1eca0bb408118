/// \file
/// How our widgets look and behave while a form is edited.
#pragma once

#include <QObject>

class QWidget;

/// Whether \a widget stands on a form that is being edited, not on one that is tried out.
bool isOnEditedForm(const QWidget &widget);

/// Undoes what the library does for panels when it is loaded: it names its own organisation, and settings
/// are kept under that name. The editors keep theirs under Qt's.
void giveSettingsBack();

/// Makes the running application, an editor, ready for forms with our widgets: gives its settings back and
/// opens the catalogue that the environment variable KEL_CATALOGUE names. Calling it again does no harm.
void prepareEditor();

/// Puts \a widget into its editor's look: a button marks what is unseen on a panel and checks once a second
/// whether the catalogue knows its command, a timer shows its picture. Shown on anything but a form that is
/// edited, as in a preview, the widget goes back to how it runs.
void giveEditorLook(QWidget &widget);
