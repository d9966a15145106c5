#pragma once

#include "store/datadir.h"

#include <QString>

#include <functional>

// The facts ChooseDataDir weighs on this machine: where the executable
// lies, whether that is an installed copy, the folder named on the command
// line (empty: none) and the per-user folder. canWrite tries a folder.
DataDirFacts DataDirFactsHere(const QString &requestedDir,
                              std::function<bool(const QString &dir)> canWrite);
