#pragma once

#include "basekit/io/CAbstract_istream.h"
#include "basekit/io/CAbstract_ostream.h"

namespace io {

/// Stream functions.  Writing: the mark.  Reading: the mark must come next, else the stream fails.
///   out << AString(L"IsBigEndian") << OpenParen << GByteOrder << CloseParen << EndLine;
CAbstract_ostream & OpenParen(CAbstract_ostream & stream);
CAbstract_ostream & CloseParen(CAbstract_ostream & stream);
CAbstract_ostream & Equals(CAbstract_ostream & stream);
CAbstract_ostream & EndLine(CAbstract_ostream & stream);
CAbstract_istream & OpenParen(CAbstract_istream & stream);
CAbstract_istream & CloseParen(CAbstract_istream & stream);
CAbstract_istream & Equals(CAbstract_istream & stream);

} // namespace io
