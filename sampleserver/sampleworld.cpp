#include "sampleworld.h"

#include "data/samplescripts.h"
#include "engine/session/generated.h"
#include "engine/session/scriptreader.h"

#include <QFile>
#include <QStringDecoder>

#include <cstdio>

namespace sampleserver {

namespace {

// Scripts come as UTF-8, as UTF-16 with a mark at their front, or in the code page of an old tool.
QString decodeScript(const QByteArray& bytes) {
    const auto marked = QStringConverter::encodingForData(bytes);
    QStringDecoder decoder(marked.value_or(QStringConverter::Utf8));
    const QString text = decoder.decode(bytes);
    return decoder.hasError() ? QString::fromLatin1(bytes) : text;
}

QString readScript(const QString& fileName) {
    QFile file(fileName);
    if (!file.open(QIODevice::ReadOnly))
        throw ScriptFailure(
            QStringLiteral("%1: %2").arg(fileName, file.errorString()).toLocal8Bit().toStdString());
    return decodeScript(file.readAll());
}

QString located(const QString& where, const engine::SqlMessage& message) {
    return QStringLiteral("%1:%2: error %3: %4\n")
        .arg(where)
        .arg(message.line)
        .arg(message.number)
        .arg(message.text);
}

void runScriptFile(engine::World& world, const QString& fileName, bool strict) {
    const engine::ScriptReport report = engine::ScriptReader(world).read(readScript(fileName));
    QString told;
    for (const engine::SqlMessage& passed : report.passedOver)
        told += QStringLiteral("%1:%2: passed over: %3\n").arg(fileName).arg(passed.line).arg(passed.text);
    for (const engine::SqlMessage& mistake : report.mistakes)
        told += located(fileName, mistake);
    if (told.isEmpty()) return;
    told += QStringLiteral("%1: %2 understood, %3 passed over, %4 refused")
                .arg(fileName)
                .arg(report.understood)
                .arg(report.passedOver.size())
                .arg(report.mistakes.size());
    if (strict || !report.mistakes.empty()) throw ScriptFailure(told.toLocal8Bit().toStdString());
    std::fprintf(stderr, "%s\n", qPrintable(told));
}

void runScripts(engine::World& world, const Options& options) {
    for (const sampledata::SampleScript& script : sampledata::sampleScripts()) {
        if (!options.sampleData) break;
        try {
            engine::runScript(world, script.text);
        } catch (const engine::SqlError& error) {
            throw ScriptFailure(located(script.name, error.message()).toLocal8Bit().toStdString());
        }
    }
    for (const QString& fileName : options.scripts)
        runScriptFile(world, fileName, options.strict);
}

void addGenerated(engine::World& world, const Options& options) {
    const QString name = QStringLiteral("Large");
    for (std::size_t i = 0; i < options.large.size(); ++i) {
        const LargeDatabase& large = options.large[i];
        engine::addLargeDatabase(world, i == 0 ? name : name + QString::number(i + 1), large.tables,
                                 large.columns, large.rows);
    }
    if (options.many) engine::addManyDatabases(world, options.many->databases, options.many->tables);
    if (options.details) {
        engine::addDetailsDatabase(world, QStringLiteral("Details"), options.details->checks,
                                   options.details->indexRows, options.details->foreignKeys);
    }
}

}  // namespace

std::shared_ptr<const engine::World> makeWorld(const Options& options) {
    auto world = std::make_shared<engine::World>();
    runScripts(*world, options);
    try {
        addGenerated(*world, options);
        world->seal();
    } catch (const engine::SqlError& error) {
        throw ScriptFailure(located(QStringLiteral("databases of the server's own"), error.message())
                                .toLocal8Bit()
                                .toStdString());
    }
    return world;
}

}  // namespace sampleserver
