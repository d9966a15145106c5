// Runs every file of the fuzz corpus through every fuzz target, so that an
// input that once crashed stays fixed in the normal build.

#include "fuzztargets.h"

#include <QDir>

int main(int argc, char **argv)
{
    if (argc != 2)
        return 2;
    const QDir corpus(QFile::decodeName(argv[1]), {}, QDir::Name, QDir::Files);
    const QStringList names = corpus.entryList();
    for (const QString &name : names) {
        QFile file(corpus.filePath(name));
        if (!file.open(QIODevice::ReadOnly))
            return 1;
        const QByteArray bytes = file.readAll();
        for (const auto entry : {FuzzReader, FuzzLoad})
            entry(reinterpret_cast<const uint8_t *>(bytes.constData()), size_t(bytes.size()));
    }
    return names.isEmpty() ? 1 : 0;
}
