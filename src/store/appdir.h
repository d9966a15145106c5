#pragma once

#include <QString>

// The directory that holds the seven data files. main() sets it to the
// executable's directory once; tests point it at a fresh temporary one.
void SetAppDir(const QString &dir);
QString AppDir();

// AppDir() joined with a file name.
QString AppFilePath(const QString &fileName);
