#pragma once

#include <QString>

#include <functional>

// The directory that holds the seven data files. main() chooses it once at
// start-up (see datadir.h); tests point it at a fresh temporary one.
void SetAppDir(const QString &dir);
QString AppDir();

// AppDir() joined with a file name.
QString AppFilePath(const QString &fileName);

// Set at start-up when no data folder could be written. The program still
// shows what is stored, but the store refuses every save, so that a change
// is never half made and then lost.
void SetDataReadOnly(bool readOnly);
bool DataReadOnly();
// Why a save is refused, naming the folder: for the box the store shows.
QString DataReadOnlyText();

// Asked each time the program is about to rely on writing the folder: why
// it may no longer (another copy took it over), or nothing. Once it gives a
// reason the program stays read-only, and DataReadOnlyText() is that reason.
// An empty function asks nothing.
void SetWriteCheck(std::function<QString()> check);
