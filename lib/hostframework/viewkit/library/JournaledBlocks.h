#pragma once

#include "basekit/io/CBlock_ptr.h"
#include "viewkit/library/BlockEncoding.h"
#include "viewkit/library/NameSet.h"

#include <cstdint>
#include <memory>
#include <unordered_map>

namespace io {
class BlockJournal;
class RecordIndex;
struct BlockPlace;
} // namespace io

namespace library {

/// What a private file holds of the blocks that remember their edits, so that the next store of one appends the edits
/// alone.  Now and then such a block is stored whole: when its edits take four times the room that it took, so that
/// reading it costs a few times the block at most.
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
    /// Floating values read back bit for bit.
    bool isExact = false;
    /// The file holds it already.
    bool isNeedless = false;
  };

  /// The block or one of its children remembers its edits.
  static bool IsJournaled(io::CBlock const & block);
  /// `place`: where the private file of that salt has the block, or null; salt 0: the record can't be one of edits.
  CStreamioLibrary::LibIOReturn Prepare(io::CBlock const & block, io::BlockPlace const * place, std::uint64_t salt,
                                        Encoding const & encoding, Record & record, AString & error) const;
  /// The library holds the block as it is now: in the private file at the place, or for null in the public one.
  void Holds(io::CBlock const & block, io::BlockPlace const * place, std::uint64_t salt);
  void Stored(Record const & record, std::uint64_t offset, std::uint64_t salt);
  /// The record of the block did not reach the file.
  void Failed(io::CBlock const & block);
  /// A plain block was stored under the name since.
  void Superseded(std::string const & name) { m_unsent.erase(name); }
  void Deleted(std::string const & name) {
    m_unsent.erase(name);
    m_known.erase(name);
  }
  /// What the file holds of the block can't be gone on from.
  void Forget(std::string const & name) { m_known.erase(name); }
  void ForgetAll() { m_known.clear(); }
  void TakeUnsent(JournaledBlocks const & other) { m_unsent = other.m_unsent; }
  /// Blocks that failed and are still to be had, but for those of the names.
  std::vector<io::CBlock const *> Unsent(NameSet const & names);
  bool HasUnsent() const { return !m_unsent.empty(); }
  /// The file is gone with what it held; the public one may hold the same.
  void Clear();
  void MovedToPublic(io::RecordIndex const & privateIndex);

private:
  struct Known {
    /// Of the private file; 0 with offset 0: whole, in the public file.
    std::uint64_t salt = 0;
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
