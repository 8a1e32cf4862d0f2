#pragma once

namespace tweenery {

/// From now on assistive tools see the rows of every `ZPositionList`, and can move them. Once
/// for the program.
void installZPositionAccessibility();

}  // namespace tweenery
