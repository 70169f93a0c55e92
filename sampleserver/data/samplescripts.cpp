#include "data/samplescripts.h"

#include <QDir>
#include <QFile>

// The resources lie in a static library, whose own start-up code a linker leaves out. The macro works only
// outside namespaces.
static void initializeResources() {
    Q_INIT_RESOURCE(sampledata);
}

namespace sampledata {

std::vector<SampleScript> sampleScripts() {
    initializeResources();
    const QDir folder(QStringLiteral(":/data"));
    std::vector<SampleScript> scripts;
    for (const QString& name : folder.entryList({QStringLiteral("*.sql")}, QDir::Files, QDir::Name)) {
        QFile file(folder.filePath(name));
        if (!file.open(QIODevice::ReadOnly)) qFatal("The sample data of this program is damaged.");
        scripts.push_back({.name = name, .text = QString::fromUtf8(file.readAll())});
    }
    return scripts;
}

}  // namespace sampledata
