#pragma once

#include <QIcon>
#include <QString>

// An icon of the compiled-in set, in every size it comes in (16, 22, 24,
// 32 pixels), so that it stays crisp at 96 and 144 dpi.
QIcon appIcon(const QString &name);

// Makes the compiled-in images reachable under ":/icons/"; appIcon() does
// it on first use, code that names image paths itself calls it first.
void registerImages();
