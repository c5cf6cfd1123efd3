#pragma once

// The one inclusion of Boost's textual progress display and timer. Boost marks the header as deprecated and, from 1.7x
// on, refuses it unless told otherwise; both words are said here and nowhere else.

#define BOOST_TIMER_ENABLE_DEPRECATED
#define BOOST_ALLOW_DEPRECATED_HEADERS
#include <boost/progress.hpp>
