#pragma once

#include <QString>

#include "base/ports.h"
#include "publish/export_job.h"

namespace tweenery {

/// "Writes CardView.swift and 9 images into the folder you choose."
QString wordsOfForecast(const ExportForecast& forecast);
/// What is deleted before, and where; null when nothing is.
QString wordsOfDeletion(const ExportForecast& forecast, const ExportChoices& choices);
/// "2 notes"; empty for none.
QString wordsOfNotes(size_t count);
/// "Exported 1 class and 36 images", and where to, with what earlier exports left there.
QString wordsOfResult(const ExportOutcome& outcome);
QString detailOfResult(const ExportOutcome& outcome);
/// Of a run that was stopped.
QString wordsOfStop(const ExportOutcome& outcome);

/// Whether that many files may be deleted from the folder "images" in `directory`.
Alert alertBeforeDeletion(size_t count, const QString& directory);
inline constexpr int kDeleteAnswer = 1;
/// One alert for all that went wrong; there must be something.
Alert alertOfFailures(const ExportOutcome& outcome, const QString& projectName);

}  // namespace tweenery
