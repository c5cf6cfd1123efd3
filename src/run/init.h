#pragma once

// The preparations of a run that concern the objects that outlive a datafile.

namespace colx {

// Sets up the N-gram machinery, loads the rule files and warns of settings without effect. Returns false, having said
// why, when a rule file cannot be opened. Throws fatal_error when one cannot be read to its end.
bool startup_init();

}  // namespace colx
