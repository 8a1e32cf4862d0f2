#pragma once

namespace tweenery {

/// Lets assistive tools find and operate what the canvas shows: each element below its group, and
/// the handles of the one that is selected. Once, before the first canvas.
void installCanvasAccessibility();

}  // namespace tweenery
