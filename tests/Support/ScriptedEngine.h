#pragma once

#include <QFile>
#include <QStringList>
#include <QTemporaryDir>

namespace zelk {

/// A transcript for the scripted engine (see scripted_engine.cpp) in a folder of its own, and what became of it.
class ScriptedEngine {
public:
    explicit ScriptedEngine(const QStringList &commands) {
        QFile file(transcript());
        if (file.open(QFile::WriteOnly))
            file.write(commands.join(u'\n').toUtf8() + '\n');
    }

    static QString program() { return QStringLiteral(SCRIPTED_ENGINE); }
    QString transcript() const { return _folder.filePath(QStringLiteral("transcript")); }
    QStringList arguments() const { return {transcript()}; }

    QStringList log() const {
        QFile file(transcript() + QStringLiteral(".log"));
        if (!file.open(QFile::ReadOnly))
            return {};
        return QString::fromUtf8(file.readAll()).split(u'\n', Qt::SkipEmptyParts);
    }

    qsizetype launches() const { return log().filter(QStringLiteral("launch ")).size(); }

    /// The lines that it read, in order.
    QStringList lines() const {
        QStringList lines;
        const auto all = log();
        for (const auto &entry : all) {
            if (entry.startsWith(QStringLiteral("line ")))
                lines.append(entry.mid(5));
        }
        return lines;
    }

private:
    QTemporaryDir _folder;
};

} // namespace zelk
