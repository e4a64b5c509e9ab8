#include "Run/WriteFailure.h"

#include "Output/Convert.h"
#include "Output/OutputFolder.h"
#include "Store/Database.h"

#include <cerrno>

using namespace Qt::Literals::StringLiterals;

namespace zelk::engine {

namespace {

bool isWithin(const QString &path, const QString &folder) {
    return path == folder || path.startsWith(folder + u'/');
}

} // namespace

WriteFailure explainWriteFailure(const std::exception &error, const QString &sourcePath, const QString &outputDir) {
    if (const auto *problem = dynamic_cast<const FileProblem *>(&error)) {
        if (problem->path() == sourcePath) {
            return {u"%1 can't be read (%2). Mend or replace it and sync again."_s.arg(sourcePath, problem->reason()),
                    WriteFailure::Fault::Passing};
        }
        if (problem->code() == EEXIST) {
            return {u"%1 has appeared meanwhile and wasn't touched. Sync again."_s.arg(problem->path()),
                    WriteFailure::Fault::Passing};
        }
        if (!isWithin(problem->path(), outputDir) && !isWithin(outputDir, problem->path())) { // such as a download
            return {problem->isFull() ? u"The disk of %1 is full. Make room and sync again."_s.arg(problem->path())
                                      : u"%1 can't be written (%2). Mend that and sync again."_s.arg(problem->path(),
                                                                                                     problem->reason()),
                    WriteFailure::Fault::Passing};
        }
        if (problem->code() == EISDIR) {
            return {u"A folder stands at %1. Move it away and sync again."_s.arg(problem->path()),
                    WriteFailure::Fault::Passing};
        }
        return {outputAdvice(outputDir, *problem), WriteFailure::Fault::Output};
    }
    if (const auto *problem = dynamic_cast<const DatabaseError *>(&error)) {
        if (problem->isLock()) {
            return {u"Another program holds what the engine remembers. End it and sync again."_s,
                    WriteFailure::Fault::Output};
        }
        return {u"The engine's memory can't be written (%1). Check the disk of your home folder and sync again."_s.arg(
                    QString::fromUtf8(error.what())),
                WriteFailure::Fault::Output};
    }
    // The others speak for themselves.
    return {QString::fromUtf8(error.what()),
            dynamic_cast<const SourceUnsound *>(&error) ? WriteFailure::Fault::Source : WriteFailure::Fault::Passing};
}

} // namespace zelk::engine
