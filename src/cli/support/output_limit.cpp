#include "cli/support/output_limit.h"

#include "base/errors.h"
#include "base/limits.h"

using namespace Qt::StringLiterals;

namespace tweenery {

void requireFitForOutput(size_t bytes) {
    const auto count = static_cast<int64_t>(bytes);
    if (count > limits::kBytesOfOutput) {
        throw InputError(u"standard output"_s,
                         beyondLimit(u"bytes of one package"_s, count, limits::kBytesOfOutput));
    }
}

}  // namespace tweenery
