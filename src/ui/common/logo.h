#pragma once

#include <QImage>

// The program's logo: a sealed envelope with a quill across it. The about
// box shows it, and the build draws the desktop icons from it, so the menu
// and the program show the same picture.
QImage logoImage(int side, qreal ratio = 1.0);
