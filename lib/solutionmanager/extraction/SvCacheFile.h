#pragma once

#include "basekit/text/AString.h"

namespace io {
class CBlock;
}

/// The file beside a design's results that keeps what sim values gave: a token stream of one block with one block for
/// each extractor.  It is a cache: without it everything is there, after more time.
namespace svcachefile {

/// The name of the top block.
extern AString const kTopBlockName;
/// The words of cache files; nothing here reads them.
extern AString const kVocabulary[17];

AString ExtractorBlockName(long solutionID);

/// False, and the block unchanged, when there is no such file or it is not whole.
bool Read(AString const & path, io::CBlock & block);
/// Writes beside the file, which the new one then replaces in one step.  False when that could not be; the former file
/// then stands as it was.
bool Write(AString const & path, io::CBlock const & block);

} // namespace svcachefile
