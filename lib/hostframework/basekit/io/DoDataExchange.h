#pragma once

#include "basekit/io/CBlock_func.h"
#include "basekit/io/ReadError.h"

namespace io {

class CBlock;

/// A request kind that callers hand down; every value means a plain exchange.
using TExcRq = int;

/// Reading: looks the name up and fills the value, or returns kNotFound (also for a value of another type) and leaves
/// it.  Writing: appends the named value.
ReadError DoDataExchange(CBlock & block, bool reading, AString const & name, bool & value, TExcRq request = 0);
ReadError DoDataExchange(CBlock & block, bool reading, AString const & name, AString & value, TExcRq request = 0);
ReadError DoDataExchange(CBlock & block, bool reading, AString const & name, double & value, TExcRq request = 0);
ReadError DoDataExchange(CBlock & block, bool reading, AString const & name, unsigned int & value, TExcRq request = 0);
/// The positional argument at the place; writing appends.
ReadError DoDataExchange(CBlock_ptr<CBlock_func> & func, bool reading, CBlock_func::iterator const & place,
                         double & value, TExcRq request = 0);

} // namespace io
