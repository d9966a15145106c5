#pragma once

#include <QFont>
#include <QString>

// The windows' type face: "宋体" where it is installed, else the system's
// CJK face, so that every Chinese text renders.
namespace fonts {

// The family in use: the first installed of the preferred faces, or the
// default family when none of them is.
QString uiFamily();
// The labels' and lists' font at the given point size.
QFont uiFont(int pointSize = 9);

}  // namespace fonts
