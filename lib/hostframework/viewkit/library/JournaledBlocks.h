#pragma once

#include "basekit/io/CBlock_ptr.h"
#include "viewkit/library/BlockEncoding.h"
#include "viewkit/library/NameSet.h"

#include <cstdint>
#include <memory>
#include <unordered_map>

namespace io {
class BlockJournal;
struct BlockPlace;
} // namespace io

namespace library {

/// What a private file holds of the blocks that remember their edits, so that the next store of one appends the edits
/// alone.  Now and then such a block is stored whole: when its edits take more room than it, so that reading it costs
/// no more than twice the block.
class JournaledBlocks {
public:
  struct Part {
    std::shared_ptr<io::BlockJournal> journal;
    AString child;
    bool isBlockItself = false;
    std::uint64_t identity = 0;
    std::uint64_t position = 0;
  };
  /// A record to be.
  struct Record {
    std::string name;
    std::string payload;
    std::vector<Part> parts;
    bool isPatch = false;
    /// The file holds it already.
    bool isNeedless = false;
  };

  /// The block or one of its children remembers its edits.
  static bool IsJournaled(io::CBlock const & block);
  /// `place`: where the private file has the block, or null.
  CStreamioLibrary::LibIOReturn Prepare(io::CBlock const & block, io::BlockPlace const * place,
                                        Encoding const & encoding, Record & record, AString & error) const;
  void Stored(Record const & record, std::uint64_t offset);
  /// The record of the block did not reach the file.
  void Failed(io::CBlock const & block);
  /// Blocks that failed and are still to be had, but for those of the names.
  std::vector<io::CBlock const *> Unsent(NameSet const & names);
  bool HasUnsent() const { return !m_unsent.empty(); }
  void Clear();

private:
  struct Known {
    std::uint64_t offset = 0;
    std::uint64_t wholeBytes = 0;
    std::uint64_t patchBytes = 0;
    std::vector<Part> parts;
  };
  bool PreparePatch(io::CBlock const & block, Known const & known, Encoding const & encoding, Record & record) const;

  std::unordered_map<std::string, Known, NameHash, NameEqual> m_known;
  std::unordered_map<std::string, io::CBlock_ptr<io::CBlock>, NameHash, NameEqual> m_unsent;
};

} // namespace library
