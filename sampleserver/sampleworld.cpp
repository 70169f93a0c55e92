#include "sampleworld.h"

#include "data/samplescripts.h"
#include "engine/session/generated.h"
#include "engine/session/scriptreader.h"
#include "engine/values/sqlerror.h"

#include <QFile>
#include <QStringDecoder>

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

/// Runs a step that fills the world, and tells an error together with what it stands in.
template <typename Step>
void tellingWhere(const QString& where, Step step) {
    try {
        step();
    } catch (const engine::SqlError& error) {
        const engine::SqlMessage& message = error.message();
        throw ScriptFailure(QStringLiteral("%1:%2: error %3: %4")
                                .arg(where)
                                .arg(message.line)
                                .arg(message.number)
                                .arg(message.text)
                                .toLocal8Bit()
                                .toStdString());
    }
}

void runScripts(engine::World& world, const Options& options) {
    if (options.sampleData) {
        for (const sampledata::SampleScript& script : sampledata::sampleScripts())
            tellingWhere(script.name, [&] { engine::runScript(world, script.text); });
    }
    for (const QString& fileName : options.scripts) {
        const QString text = readScript(fileName);
        tellingWhere(fileName, [&] { engine::runScript(world, text); });
    }
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
    tellingWhere(QStringLiteral("generated databases"), [&] { addGenerated(*world, options); });
    tellingWhere(QStringLiteral("system tables"), [&] { world->seal(); });
    return world;
}

}  // namespace sampleserver
