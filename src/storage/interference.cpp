#include "storage/interference.h"

namespace tweenery {
namespace {

std::function<void(Moment)>& interference() {
    static std::function<void(Moment)> action;
    return action;
}

}  // namespace

void setInterference(const std::function<void(Moment)>& action) {
    interference() = action;
}

void interfereAt(Moment moment) {
    if (interference()) { interference()(moment); }
}

}  // namespace tweenery
