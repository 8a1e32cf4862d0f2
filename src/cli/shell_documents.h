#pragma once

#include <QByteArray>
#include <span>

#include "cli/support/verb.h"

namespace tweenery {

// What is installed beside tweenc for people at a shell, made from the verbs' own tables, so that
// it never falls behind. All in UTF-8.

/// The manual page, as man(7) reads it. `date` is "2030-01-31" or empty.
QByteArray manualPage(std::span<const Verb* const> verbs, const QString& date);
/// Completions of verbs, options, the values that an option allows, and paths.
QByteArray bashCompletion(std::span<const Verb* const> verbs);
QByteArray zshCompletion(std::span<const Verb* const> verbs);
QByteArray fishCompletion(std::span<const Verb* const> verbs);

}  // namespace tweenery
