#pragma once

#include "base/VbError.h"
#include "skin/SkinModel.h"

#include <QString>
#include <QStringList>
#include <functional>

namespace Pelorin {

class SkinHost;

enum class SkinLineResult {
    Skipped,        // empty, a comment, or no "="
    Applied,        // a known keyword, applied in full
    UnknownKeyword, // skipped silently, as skins expect; the checker reports it
    Failed,         // only from ProcessLines: the line threw after applying what it could
};

// What a line did: which part of the window it touched (also when it failed half way), and,
// for the skin checker's messages, which field was being read when it failed.
struct SkinLineTrace {
    SkinChange Change;
    int Field = -1;  // 0-based field index; -1 for the whole value
    QString Meaning; // "left", "colour", "label index", "picture" ...
    QString File;    // the full path of the last picture the line tried to load
};

// Every keyword the reader knows, in lower case.
QStringList SkinKeywords();

// Applies one raw skin line to the model. Fields are converted and applied one at a time, so a
// line that fails keeps everything it set before the failing field. Throws VbError: a missing
// field is SubscriptOutOfRange, a number out of range Overflow, a bad Boolean TypeMismatch, a
// label that does not exist ControlArrayElementMissing, a picture that does not load
// CannotLoadFile. `curPath` is the skin folder ending with "/"; file names in the line are put
// behind it as they stand. `trace`, when given, tells what the line touched and which field was
// being read.
SkinLineResult ProcessLine(SkinModel& model, const QString& line, const QString& curPath,
                           SkinHost& host, SkinLineTrace* trace = nullptr);

// A line that failed while a whole skin was applied.
struct SkinLineFault {
    qsizetype LineIndex = 0; // 0-based
    QString Line;
    VbError Error;
    SkinLineTrace Trace;
};

// Applies the lines in order. Every failing line is handed to `onFault` and the next line follows;
// `afterLine`, when given, runs after every line (failed or not) with what the line touched, so a
// window can build the elements that line created. Returns the number of failed lines.
int ProcessLines(SkinModel& model, const QStringList& lines, const QString& curPath, SkinHost& host,
                 const std::function<void(const SkinLineFault&)>& onFault,
                 const std::function<void(qsizetype lineIndex, SkinLineResult, const SkinChange&)>&
                     afterLine = {});

// The title and text of the message a failing skin line shows (a critical message box).
QString SkinLineErrorTitle();
QString SkinLineErrorText(const VbError& error, const QString& line);

} // namespace Pelorin
