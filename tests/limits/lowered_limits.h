#pragma once

// Programs with lowered limits, for tests from outside: each is the program itself with another main. What the variable
// NGREX_LOWERED_LIMITS of the environment holds, such as "frequency=100", is set before anything else happens. The
// programs that are installed know nothing of it.

namespace colx::test {

// Sets the limits that the environment names. Ends the process when it names none that there is.
void lower_limits();

}  // namespace colx::test
