// The program's own icons.
#pragma once

#include <QIcon>

// An icon of the toolbar in the colours of the desktop, sharp at every density; null for a name
// that there is not.
QIcon ToolIcon(const QString& name);

// The program's icon as SVG, and drawn: a bare machine has no icons.
QByteArray ProgramPicture();
QPixmap ProgramPixmap(int size);
QIcon ProgramIcon();
