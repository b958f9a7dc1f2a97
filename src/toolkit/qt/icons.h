// The program's own icons.
#pragma once

#include <QIcon>

// An icon of the toolbar in the colours of the desktop, sharp at every density; null for a name
// that there is not.
QIcon ToolIcon(const QString& name);
