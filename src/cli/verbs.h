#pragma once

#include <span>

#include "cli/support/verb.h"

namespace tweenery {

// What tweenc can do; each verb stands in a file of its own.
const Verb& infoVerb();
const Verb& describeVerb();
const Verb& dumpVerb();
const Verb& valuesVerb();
const Verb& exportVerb();
const Verb& certifyVerb();
const Verb& renderVerb();
const Verb& checkVerb();
const Verb& copyVerb();
const Verb& updateVerb();
const Verb& newVerb();
const Verb& completionVerb();

/// All of them, in the order of the help. They live as long as the program.
std::span<const Verb* const> allVerbs();

}  // namespace tweenery
