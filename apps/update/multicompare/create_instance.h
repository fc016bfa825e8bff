#pragma once

#include <boost/config.hpp>

class BasicMultiApp;

// The module's factory, exported under its plain name. A new application that the caller destroys through its virtual
// destructor; null when there is no memory for it.
extern "C" BOOST_SYMBOL_EXPORT BasicMultiApp* create_instance();
