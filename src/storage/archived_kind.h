#pragma once

namespace tweenery {

/// What stands behind a key. Data is also what no reader takes: dates, sets, dictionaries that are
/// no objects.
enum class ArchivedKind { Missing, Null, Bool, Number, String, Data, Array, Object };

}  // namespace tweenery
