#pragma once

// An end with a message where the language ends a program by a signal: above all when memory is so short that not even
// std::bad_alloc, or what is to be thrown in its place, can be made.

namespace colx {

// Has `last_words(reason)` called there: with what the exception in hand says, or with null when there is none or
// memory is what it is about. They must end the process, and need no memory.
void end_with_words(void (*last_words)(const char* reason));

}  // namespace colx
