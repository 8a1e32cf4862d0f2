#pragma once

namespace tweenery {

/// From here on Ctrl+C, SIGTERM and SIGHUP end the program as ever, but not before it has taken its
/// temporary files and folders along; a second signal ends it at once. To be called once, before
/// any other thread begins. A signal that was ignored stays ignored.
void watchSignals();

}  // namespace tweenery
